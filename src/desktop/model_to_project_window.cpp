#include "model_to_project_window.h"

#include <QFormLayout>
#include <QPushButton>
#include <QTabWidget>

#include "inspect/check.h"
#include "neutraltext/modGlobal.h"
#include "program/error_boxes.h"
#include "qt_text.h"
#include "result_table.h"
#include "runtime/run_time_error.h"

namespace merivane::desktop {

using namespace neutraltext;

ModelToProjectWindow::ModelToProjectWindow(frmIDEF3ToProject& form, QtDesktop& desktop)
    : FormWindow(form, desktop, "Celvar to MS Project", frmIDEF3ToProject::kHelpContextId),
      form_(form) {
  setObjectName("frmIDEF3ToProject");
  QFormLayout* source = AddRows();
  AddPath(source, {"Label1", "Celvar Text File:", "txtCelvarFilename", "cmdBrowseText",
                   form.txtCelvarFilename, "txt", [&form] { form.cmdBrowseText(); }});
  AddToRow(source, "cmdCheck", "Check", [this] { Check(); });
  QTabWidget* tabs = AddTabs("SSTabGenerateOpt", form.SSTabGenerateOpt);
  AddPath(AddTab(tabs, frmIDEF3ToProject::kDatabaseTab),
          {"Label3", "MS Project MDB:", "txtDatabase", "BrowsedbBt", form.txtDatabase, "mdb",
           [&form] { form.BrowsedbBt(); }});
  QFormLayout* mpx = AddTab(tabs, frmIDEF3ToProject::kMpxTab);
  AddPath(mpx,
          {"Label5", "Interim Database:", "txtDatabase_mpx", "BrowsedbBt_mpx", form.txtDatabase_mpx,
           "mdb", [&form] { form.BrowsedbBt_mpx(); }, "Interim Database of the MPX file"});
  AddPath(mpx, {"Label6", "MPX File:", "txtMpx", "cmdBrowseMPX", form.txtMpx, "mpx",
                [&form] { form.cmdBrowseMPX(); }});
  QFormLayout* xml = AddTab(tabs, frmIDEF3ToProject::kXmlTab);
  AddPath(xml,
          {"Label7", "Interim Database:", "txtDatabase_xml", "BrowsedbBt_xml", form.txtDatabase_xml,
           "mdb", [&form] { form.BrowsedbBt_xml(); }, "Interim Database of the XML file"});
  AddPath(xml, {"Label8", "XML File:", "txtXml", "cmdBrowseXML", form.txtXml, "xml",
                [&form] { form.cmdBrowseXML(); }});
  auto* append = new QPushButton("Append...", this);
  append->setObjectName("cmdBrowseDatabase");
  append->hide();
  connect(append, &QPushButton::clicked, this,
          [this] { Run([this] { form_.cmdBrowseDatabase(); }); });
  AddCheckBox("CkLaunchMsprojApp", "Launch Microsoft Project Mgt Application After Generation",
              form.CkLaunchMsprojApp, [&form] { form.CkLaunchMsprojApp_Click(); });
  AddButtons(
      "cmdHelp2", frmIDEF3ToProject::kHelpButtonContextId, [this] { Ok(); },
      [&form] { form.cmdCancel(); });
  TellPicks(form);
  Draw();
}

void ModelToProjectWindow::Check() {
  const std::string& model = form_.txtCelvarFilename.text;
  if (model.empty()) {
    desktop_.ShowMessage({"Please Select Source Celvar Text Filename"});
    return;
  }
  desktop_.TellAbout(model);
  const SavedMousePointer pointer(desktop_, kPointerHourglass);
  try {
    auto* list = new CheckWindow(model, inspect::CheckModel(model, desktop_.TemplatePath()),
                                 desktop_, window());
    list->show();
  } catch (const RunTimeError& error) {
    ShowDescription(desktop_, error);
  }
}

void ModelToProjectWindow::Ok() { RunOk(form_, std::string(form_.txtCelvarFilename.text)); }

}  // namespace merivane::desktop
