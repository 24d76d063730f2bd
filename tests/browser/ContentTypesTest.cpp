// The content types of interactive-TV pages.
#include "browser/page/ContentTypes.h"

#include <gtest/gtest.h>

#include "tests/browser/Printing.h"

namespace browser {

namespace {

TEST(ContentTypes, TelevisionPagesAreXhtml) {
    EXPECT_EQ(BrowserContentType("application/vnd.hbbtv.xhtml+xml"), "application/xhtml+xml");
    EXPECT_EQ(BrowserContentType("application/ce-html+xml"), "application/xhtml+xml");
    EXPECT_EQ(BrowserContentType("Application/VND.HbbTV.xhtml+xml"), "application/xhtml+xml");
}

TEST(ContentTypes, ParametersStay) {
    EXPECT_EQ(BrowserContentType("application/vnd.hbbtv.xhtml+xml ; charset=utf-8"),
              "application/xhtml+xml; charset=utf-8");
}

TEST(ContentTypes, OthersStayAsTheyAre) {
    EXPECT_EQ(BrowserContentType("text/html; charset=utf-8"), "text/html; charset=utf-8");
    EXPECT_EQ(BrowserContentType("application/octet-stream"), "application/octet-stream");
}

TEST(ContentTypes, LocalFilesGoByTheirName) {
    EXPECT_EQ(FileContentType(QUrl("file:///pages/a.xhtml")), "application/xhtml+xml");
    EXPECT_EQ(FileContentType(QUrl("file:///pages/A.XHTML")), "application/xhtml+xml");
    EXPECT_EQ(FileContentType(QUrl("file:///pages/a.html")), "");
    EXPECT_EQ(FileContentType(QUrl("http://host/a.xhtml")), "");
}

}  // namespace

}  // namespace browser
