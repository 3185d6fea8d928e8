#pragma once

#include <functional>

namespace tarn::gtk {

// The engine fetches for all pages in one process, and says nothing to the downloads that end with it.
class NetworkProcessWatch {
public:
    // Of the process that runs now; where none is found nothing is told.
    explicit NetworkProcessWatch(std::function<void()> onEnd);
    ~NetworkProcessWatch();
    NetworkProcessWatch(NetworkProcessWatch const&) = delete;
    NetworkProcessWatch& operator=(NetworkProcessWatch const&) = delete;

private:
    // May end this.
    std::function<void()> m_onEnd;
    int m_descriptor;
    unsigned m_source { 0 };
};

}
