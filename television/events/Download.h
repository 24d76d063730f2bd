// A small document from a file or the network.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace television {

struct Download {
    std::string content;
    std::string fault;  // a clause that says why there is no content; empty when there is
};

// Loads an http, https or file URL, whose document may have 64 KiB and take ten seconds. `wanted` is asked from time to
// time; once it answers false the download ends, and there is nothing to tell of it.
std::optional<Download> Load(const std::string& url, const std::function<bool()>& wanted);

}  // namespace television
