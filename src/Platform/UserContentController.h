#pragma once

#include <string>
#include <vector>

namespace tarn::platform {

enum class InjectionTime { documentStart, documentEnd };
enum class InjectedFrames { allFrames, mainFrameOnly };

struct UserScript {
    std::string source;
    InjectionTime injectionTime { InjectionTime::documentStart };
    InjectedFrames frames { InjectedFrames::allFrames };
};

// What is installed into a view's pages. Read once, when the view is made.
struct UserContentController {
    std::vector<UserScript> userScripts;
};

}
