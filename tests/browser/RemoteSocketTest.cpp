// The remote's socket: one TV browser at a time, and none that is dead stands in the way.
#include "browser/remote/RemoteSocket.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include "tests/browser/Printing.h"

namespace browser {

namespace {

class Remote : public testing::Test {
protected:
    QString Path() const { return m_folder.filePath("remote"); }

    // Sends lines and returns as many lines of answer.
    QStringList Ask(const QByteArray& lines, int answers) {
        QLocalSocket socket;
        socket.connectToServer(Path());
        socket.write(lines);
        QStringList received;
        while (received.size() < answers && socket.state() != QLocalSocket::UnconnectedState) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
            while (socket.canReadLine()) {
                received += QString::fromUtf8(socket.readLine()).trimmed();
            }
        }
        return received;
    }

private:
    int m_count = 1;
    char m_name[5] = "test";
    char* m_arguments[2] = {m_name, nullptr};
    QCoreApplication m_application{m_count, m_arguments};
    QTemporaryDir m_folder;
};

QString Echo(const QString& line) {
    return "ok " + line;
}

TEST_F(Remote, AnswersEachLineWithALine) {
    RemoteSocket remote(Echo);
    ASSERT_EQ(remote.Listen(Path()), std::nullopt);
    EXPECT_EQ(Ask("one\ntwo\n", 2), (QStringList{"ok one", "ok two"}));
}

TEST_F(Remote, AnAnswerOfTwoLinesBecomesOne) {
    RemoteSocket remote([](const QString&) { return QString("ok a\nb"); });
    ASSERT_EQ(remote.Listen(Path()), std::nullopt);
    EXPECT_EQ(Ask("x\n", 1), QStringList{"ok a b"});
}

TEST_F(Remote, AnswersOfMegabytesArriveWhole) {
    const QString text(5'000'000, 'x');
    RemoteSocket remote([&](const QString&) { return "ok " + text; });
    ASSERT_EQ(remote.Listen(Path()), std::nullopt);
    EXPECT_EQ(Ask("x\n", 1), QStringList{"ok " + text});
}

TEST_F(Remote, ALineThatIsTooLongIsRefused) {
    RemoteSocket remote(Echo);
    ASSERT_EQ(remote.Listen(Path()), std::nullopt);
    const QStringList answers = Ask(QByteArray(3'000'000, 'x') + "\nstill\n", 2);
    ASSERT_EQ(answers.size(), 2);
    EXPECT_TRUE(answers.first().startsWith("error The line is too long")) << answers.first();
    EXPECT_EQ(answers.last(), "ok still");
}

TEST_F(Remote, ASecondOneOnTheSameSocketIsRefusedAndTheFirstLivesOn) {
    RemoteSocket first(Echo);
    RemoteSocket second(Echo);
    ASSERT_EQ(first.Listen(Path()), std::nullopt);
    EXPECT_TRUE(second.Listen(Path()).value_or(QString()).contains(Path()));
    EXPECT_EQ(Ask("still\n", 1), QStringList{"ok still"});
}

TEST_F(Remote, ASocketLeftBehindIsTakenOver) {
    {
        QFile left(Path());
        ASSERT_TRUE(left.open(QIODevice::WriteOnly));
    }
    RemoteSocket remote(Echo);
    EXPECT_EQ(remote.Listen(Path()), std::nullopt);
    EXPECT_EQ(Ask("here\n", 1), QStringList{"ok here"});
}

TEST_F(Remote, APathThatCannotBeIsToldInASentence) {
    RemoteSocket remote(Echo);
    EXPECT_TRUE(remote.Listen("/nowhere/at/all").value_or(QString()).contains("/nowhere/at/all"));
}

TEST_F(Remote, TheSocketIsGoneAfterClosing) {
    RemoteSocket remote(Echo);
    ASSERT_EQ(remote.Listen(Path()), std::nullopt);
    remote.Close();
    EXPECT_FALSE(QFile::exists(Path()));
}

}  // namespace

}  // namespace browser
