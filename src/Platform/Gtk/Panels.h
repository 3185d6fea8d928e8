#pragma once

#include "Platform/Gtk/RunLoop.h"
#include "Platform/Panels.h"
#include "Support/Lifetime.h"

#include <gtkmm/window.h>

#include <list>
#include <memory>

namespace tarn::gtk {

class Panels final : public platform::Panels {
public:
    Panels();
    ~Panels() override;

    void showAlert(platform::Alert const&, platform::SheetParent, Reply<platform::AlertResponse>) override;
    void showOpenPanel(
        platform::OpenPanel const&, platform::SheetParent, Reply<std::vector<std::filesystem::path>>) override;
    void showSavePanel(
        platform::SavePanel const&, platform::SheetParent, Reply<std::optional<std::filesystem::path>>) override;
    void dismiss(platform::SheetParent) override;

private:
    class Dialog;
    class AlertDialog;
    class FileDialog;

    Dialog& add(std::unique_ptr<Dialog>, platform::SheetParent);
    // On a later turn: it may be in the middle of telling its answer.
    void end(Dialog&);

    RunLoop m_runLoop;
    std::list<std::unique_ptr<Dialog>> m_dialogs;
    Lifetime m_lifetime;
};

// The window of a sheet; none where the dialog is to stand free.
Gtk::Window* sheetWindow(platform::SheetParent);
// Keeps input from the parent alone: other windows of the application go on. The dialog is not shown yet.
void makeSheet(GtkWindow* dialog, Gtk::Window& parent);

}
