// The television in software, switched on with the demonstration.
#include <cstdio>
#include <cstdlib>

#include "television/Television.h"
#include "tests/platform/Host.h"

void contract::StartPlatform() {
    television::Configuration configuration;
    configuration.demonstration = DEMONSTRATION_STREAM;
    configuration.timetable = false;
    configuration.demonstrationTime = 1'700'049'600;
    configuration.sound = false;
    auto& television = television::Television::Instance();
    if (const auto failure = television.Start(configuration, {})) {
        std::fprintf(stderr, "The television does not start: %s\n", failure->c_str());
        std::exit(2);
    }
    television.PageOpened(true, {"http://inside.example"});
}

void contract::EndPlatform() {
    television::Television::Instance().PageClosed();
    television::Television::Instance().Stop();
}
