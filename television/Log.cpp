// The output behind the log lines, which outlives everything that writes to it.
#include "television/Log.h"

#include <cstdio>
#include <memory>
#include <mutex>

namespace television {
namespace {

// Never destroyed: lines are written until the process ends.
struct Output {
    std::mutex mutex;
    std::shared_ptr<const LogSink> sink;
};

Output& TheOutput() {
    static Output& output = *new Output;
    return output;
}

std::shared_ptr<const LogSink> Sink() {
    std::lock_guard lock(TheOutput().mutex);
    return TheOutput().sink;
}

}  // namespace

void SetLogSink(LogSink sink) {
    auto shared = sink ? std::make_shared<const LogSink>(std::move(sink)) : nullptr;
    std::lock_guard lock(TheOutput().mutex);
    TheOutput().sink = std::move(shared);
}

void Log(const std::string& line) {
    if (const auto sink = Sink()) (*sink)(line);
}

void LogPluginLine(const std::string& line) {
    if (const auto sink = Sink())
        (*sink)(line);
    else
        std::fprintf(stderr, "%s\n", line.c_str());
}

}  // namespace television
