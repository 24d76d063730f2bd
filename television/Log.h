// Where the television's lines go: to the program around it, or to standard error while there is none.
#pragma once

#include <functional>
#include <string>

namespace television {

using LogSink = std::function<void(const std::string& line)>;

// An empty sink: lines of the plug-in go to standard error, those of the television nowhere. Any thread.
void SetLogSink(LogSink sink);
// A line of what the television does. Any thread.
void Log(const std::string& line);
// A line of the plug-in's.
void LogPluginLine(const std::string& line);

}  // namespace television
