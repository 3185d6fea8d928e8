#include "Web/StageProcess.h"

#include <stdexcept>

namespace tarn::test {

StageProcess::StageProcess()
{
    GError* error = nullptr;
    m_process = gtk::adopt(g_subprocess_new(G_SUBPROCESS_FLAGS_STDOUT_PIPE, &error, TARN_STAGE_SERVER, nullptr));
    if (!m_process)
        throw std::runtime_error(error->message);
    // The address is all that it says.
    auto const output = gtk::adopt(g_data_input_stream_new(g_subprocess_get_stdout_pipe(m_process.get())));
    g_autofree char* line = g_data_input_stream_read_line(output.get(), nullptr, nullptr, nullptr);
    if (!line)
        throw std::runtime_error("the stand-in services did not start");
    m_proxyUri = line;
}

StageProcess::~StageProcess()
{
    g_subprocess_force_exit(m_process.get());
    g_subprocess_wait(m_process.get(), nullptr, nullptr);
}

}
