#include "Support/Log.h"

#include <glib.h>

namespace tarn {

void logToSystem(std::string const& line)
{
    g_log_structured("tarn", G_LOG_LEVEL_MESSAGE, "MESSAGE", "%s", line.c_str());
}

}
