// One visit to everything that the object does, as a page and a television make it, on a browser of its own.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/PluginInstance.h"
#include "tests/support/RecordingPlatform.h"

namespace endurance {

using Lines = std::vector<std::string>;

// A use of a function of the browser ("evaluate") or an operation of the platform ("player.SetChannel") that fails.
struct Fault {
    std::string function;
    unsigned use = 0;  // 1: the first of the tour; 0: none fails
};

// What one step came to: "= RESULT", "throws TEXT" or "refused" first, then what script, player, cache and service were
// told, then the warnings and errors of the log ("log TEXT").
struct Step {
    std::string name;
    Lines lines;
};

class Tour {
public:
    // What is different from a television that has everything.
    using Prepare = std::function<void(support::FakeBrowser& browser, support::PlatformAnswers& answers)>;

    // Makes the whole tour; everything is given back at its end, or the test has failed.
    explicit Tour(const Fault& fault = {}, const Prepare& prepare = {});
    Tour(const Tour&) = delete;
    Tour& operator=(const Tour&) = delete;

    const std::vector<Step>& Steps() const { return m_steps; }
    // How often a function or operation was used.
    unsigned Uses(const std::string& function) const;
    // The position of the step in which the fault came, that of no step when it never did; and which of the step's uses
    // failed.
    std::size_t Struck() const { return m_struck; }
    unsigned UseInStep() const { return m_useInStep; }
    // Every operation of the platform that was called, without arguments.
    const Lines& Operations() const { return m_operations; }

private:
    using Act = std::function<support::Outcome()>;
    using Notification = std::function<void(IBroadcastPlayerListener&)>;

    // The parts of the tour, in their order.
    void Construct();
    void SetHandlersAndListeners();
    void ReadProperties();
    void ReadWithoutPlayer();
    void ShowTheWindow();
    void BindAndStep();
    void SetChannels();
    void HearOfChannels();
    void MakeChannelObjects();
    void ChangeTheWindow();
    void ChooseComponents();
    void HearOfRatingsAndRights();
    void HearStreamEvents();
    void SuspendAndResume();
    void StopAndRelease();
    void ClearHandlersAndListeners();
    void Destroy();
    void ExpectNothingHeld();

    // Makes a step, with all that it leads to on the browser's main thread.
    void Make(const std::string& name, const Act& act);
    void Call(const std::string& name, const std::string& method, const support::Values& arguments = {});
    void Get(const std::string& property);
    void Set(const std::string& property, const support::Value& value);
    void Hear(const std::string& name, unsigned channelWithHold, const Notification& notification);
    void Record(const std::string& name, const support::Outcome& outcome);
    void NoteTheFault();

    support::FaultPlan& Faults();
    Lines MissingMembers();
    std::string Describe(NPObject* event);
    std::string WithoutNumbers(std::string text) const;

    const Fault m_fault;
    support::RecordingPlatform& m_platform;
    support::FakeBrowser m_browser;
    std::optional<support::PluginInstance> m_object;
    support::FakeObject* m_handlers[11] = {};
    support::FakeObject* m_listeners[8] = {};
    support::FakeObject* m_streamListener = nullptr;
    std::vector<Step> m_steps;
    Lines m_operations;
    std::size_t m_struck = static_cast<std::size_t>(-1);
    unsigned m_useInStep = 0;
    unsigned m_usesBefore = 0;
};

}  // namespace endurance
