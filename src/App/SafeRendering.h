#pragma once

#include "App/BlankStarts.h"
#include "App/Rendering.h"
#include "Platform/Panels.h"
#include "Platform/UserDefaults.h"
#include "Support/Lifetime.h"

#include <functional>

namespace tarn {

// Drawing in software where the graphics driver is broken. How a start draws is planned before anything is drawn, and
// holds until its end; what the user decides meanwhile is for the next one.
class SafeRendering {
public:
    // What is known before anything is drawn.
    struct Facts {
        // By the command line, for this start.
        bool isAskedFor { false };
        // By the user's settings, for all.
        bool isKept { false };
        // Starts in a row before this one that ended before they had shown anything.
        std::size_t blankStarts { 0 };
    };
    // What the window says when it is first shown.
    enum class Remark {
        none,
        // The last start was blank.
        offer,
        // So were several, and this one draws in software by itself.
        begun,
    };
    struct Plan {
        Rendering rendering { Rendering::detected };
        Remark remark { Remark::none };
        friend bool operator==(Plan, Plan) = default;
    };
    static Plan plan(Facts);
    static bool isKept(platform::UserDefaults const&);

    struct Start {
        Plan plan {};
        BlankStarts blankStarts {};
        // Ends the program, and starts it again with safe rendering.
        std::function<void()> restart {};
    };

    // The ports outlive this.
    SafeRendering(Start, platform::UserDefaults&, platform::Panels&);
    SafeRendering(SafeRendering const&) = delete;
    SafeRendering& operator=(SafeRendering const&) = delete;

    bool isOn() const { return m_start.plan.rendering == Rendering::safe; }
    bool isKept() const { return isKept(m_defaults); }
    // For the starts that follow.
    void setKept(bool);
    void keepAndRestart();

    // Something was shown, or the program ends as it should.
    void startSucceeded() { m_start.blankStarts.end(); }
    // What there is to say about this start, on that window; once.
    void remark(platform::SheetParent);
    // Somebody asks for safe rendering now. Nothing where it is on already.
    void offerRestart(platform::SheetParent);

private:
    void ask(platform::Alert, platform::SheetParent, void (SafeRendering::*onFirstButton)());
    void keep() { setKept(true); }

    Start m_start;
    platform::UserDefaults& m_defaults;
    platform::Panels& m_panels;
    Lifetime m_lifetime;
};

}
