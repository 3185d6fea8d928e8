#include "Platform/Gtk/Application.h"
#include "Platform/Gtk/CommandLineAnswer.h"
#include "Platform/Gtk/SessionBus.h"
#include "Platform/Gtk/StartUp.h"

int main(int argc, char* argv[])
{
    if (auto const status = tarn::gtk::answerCommandLine(argc, argv))
        return *status;
    tarn::gtk::forgetUnreachableSessionBus();
    auto options = tarn::gtk::Application::userOptions();
    tarn::gtk::prepareStart(options, argc, argv);
    return tarn::gtk::runApplication(std::move(options), argc, argv);
}
