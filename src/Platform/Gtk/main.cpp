#include "Platform/Gtk/Application.h"
#include "Platform/Gtk/CommandLineAnswer.h"
#include "Platform/Gtk/Renderers.h"
#include "Platform/Gtk/SessionBus.h"

#include <glibmm/init.h>

int main(int argc, char* argv[])
{
    if (auto const status = tarn::gtk::answerCommandLine(argc, argv))
        return *status;
    tarn::gtk::forgetUnreachableSessionBus();
    tarn::gtk::chooseRenderers();
    // Docks match windows to the desktop file by this name.
    g_set_prgname(TARN_APPLICATION_ID);
    g_set_application_name("Tarn");
    Glib::init();
    auto const application
        = Glib::make_refptr_for_instance(new tarn::gtk::Application(tarn::gtk::Application::userOptions()));
    return application->run(argc, argv);
}
