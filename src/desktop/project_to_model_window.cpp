#include "project_to_model_window.h"

#include <QComboBox>
#include <QPushButton>
#include <QTabWidget>

#include "inspect/merge_preview.h"
#include "neutraltext/modGlobal.h"
#include "program/error_boxes.h"
#include "qt_text.h"
#include "result_table.h"
#include "runtime/run_time_error.h"
#include "store/connection.h"

namespace merivane::desktop {

using namespace neutraltext;

ProjectToModelWindow::ProjectToModelWindow(frmProjectToIDEF3& form, QtDesktop& desktop)
    : FormWindow(form, desktop, "MS Project to Celvar", frmProjectToIDEF3::kHelpContextId),
      form_(form) {
  setObjectName("frmProjectToIDEF3");
  AddPath(AddRows(),
          {"Label1", "Target Celvar Text Filename:", "txtCelvarFilename", "cmdBrowseText",
           form.txtCelvarFilename, "txt", [&form] { form.cmdBrowseText(); }});
  QTabWidget* tabs = AddTabs("SSTabInput", form.SSTabInput);
  AddDatabaseTab(tabs);
  AddMpxTab(tabs);
  AddXmlTab(tabs);
  AddCheckBox("optLaunchCelvar", "Launch Celvar and Import Text", form.optLaunchCelvar,
              [&form] { form.optLaunchCelvar_Click(); });
  AddPreview();
  AddButtons(
      "cmdHelp3", frmProjectToIDEF3::kHelpButtonContextId, [this] { Ok(); },
      [&form] { form.cmdCancel(); });
  TellPicks(form);
  Draw();
}

void ProjectToModelWindow::AddDatabaseTab(QTabWidget* tabs) {
  QFormLayout* rows = AddTab(tabs, frmProjectToIDEF3::kDatabaseTab);
  AddPath(rows, {"Label2", "MS Project Database:", "txtDatabase", "cmdBrowseDatabase",
                 form_.txtDatabase, "mdb", [this] { form_.cmdBrowseDatabase(); }});
  projects_ = new QComboBox;
  projects_->setObjectName("comboProject");
  projects_->setAccessibleName("Select Project");
  projects_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  projects_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  AddField(rows, "Label3", "Select Project:", projects_);
  ConnectChoice(projects_, [this](std::size_t row) {
    Run([this, row] {
      form_.comboProject.listIndex = row;
      form_.comboProject_Click();
    });
  });
}

void ProjectToModelWindow::AddMpxTab(QTabWidget* tabs) {
  QFormLayout* rows = AddTab(tabs, frmProjectToIDEF3::kMpxTab);
  AddPath(rows, {"Label4", "MPX:", "txtMPX", "cmdBrowseMPX", form_.txtMPX, "mpx",
                 [this] { form_.cmdBrowseMPX(); }});
  AddPath(rows, {"Label5", "Interim Database:", "txtInterimDB", "cmdInterimDB", form_.txtInterimDB,
                 "mdb", [this] { form_.cmdInterimDB(); }, "Interim Database of the MPX file"});
}

void ProjectToModelWindow::AddXmlTab(QTabWidget* tabs) {
  QFormLayout* rows = AddTab(tabs, frmProjectToIDEF3::kXmlTab);
  AddPath(rows, {"Label6", "XML:", "txtXML", "cmdBrowseXML", form_.txtXML, "xml",
                 [this] { form_.cmdBrowseXML(); }});
  AddPath(rows, {"Label7", "Interim Database:", "txtInterimDB_xml", "cmdInterimDB_xml",
                 form_.txtInterimDB_xml, "mdb", [this] { form_.cmdInterimDB_xml(); },
                 "Interim Database of the XML file"});
}

// A preview is of a merge, and of what one tab names.
void ProjectToModelWindow::AddPreview() {
  QPushButton* preview = AddBesideOk("cmdPreview", "Preview...", [this] { Preview(); });
  draws_.emplace_back([this, preview] {
    preview->setVisible(form_.SSTabInput != frmProjectToIDEF3::kDatabaseTab);
    const auto [plan, interim] = PlanAndInterim();
    preview->setEnabled(form_.MergedProject() && !plan.empty() && !interim.empty());
  });
}

std::pair<std::string, std::string> ProjectToModelWindow::PlanAndInterim() const {
  if (form_.SSTabInput == frmProjectToIDEF3::kXmlTab) {
    return {form_.txtXML.text, form_.txtInterimDB_xml.text};
  }
  return {form_.txtMPX.text, form_.txtInterimDB.text};
}

void ProjectToModelWindow::Preview() {
  const auto [plan, interim] = PlanAndInterim();
  desktop_.TellAbout(plan);
  const SavedMousePointer pointer(desktop_, kPointerHourglass);
  try {
    const std::int32_t project = *form_.MergedProject();
    const inspect::MergePreview preview =
        form_.Complete
            ? inspect::PreviewCompleteMerge(plan, interim, project, desktop_.TemplatePath(),
                                            inspect::Proof::kNone, &desktop_)
            : inspect::PreviewMerge(plan, interim, project, &desktop_);
    auto* table = new PreviewWindow(plan, preview, desktop_, window());
    table->WhenClosed(QDialog::Accepted, this, [this] { Run([this] { Ok(); }); });
    const PlannedMerge merge{plan, interim, project, form_.Complete};
    table->WhenClosed(PreviewWindow::kShow, this, [this, merge] { OnShow(merge); });
    table->open();
  } catch (const RunTimeError& error) {
    ShowDescription(desktop_, error);
  } catch (const RunCancelled&) {
    // The user looks no further.
  }
}

void ProjectToModelWindow::Draw() {
  FormWindow::Draw();
  DrawComboBox(projects_, form_.comboProject);
}

void ProjectToModelWindow::Ok() {
  const bool fromDatabase = form_.SSTabInput == frmProjectToIDEF3::kDatabaseTab;
  const std::string source = fromDatabase ? form_.txtDatabase.text : PlanAndInterim().first;
  if (fromDatabase || !form_.MergedProject()) {
    RunOk(form_, source);
    return;
  }
  const PlannedMerge merge{source, PlanAndInterim().second, *form_.MergedProject(), form_.Complete};
  RunOk(form_, source, [&] { return Prove(merge); });
}

// The merge stands, whatever becomes of its proof.
QString ProjectToModelWindow::Prove(const PlannedMerge& merge) {
  if (!form_.GenerateResult.value_or(false)) return {};
  const SavedMousePointer pointer(desktop_, kPointerHourglass);
  inspect::MergeProof proof;
  try {
    Workspace workspace;
    Connection connection(workspace);
    connection.Open(ConnectionText(merge.database), OpenMode::kReadOnly);
    proof = inspect::ProveMerge(connection, merge.project, form_.Result.file,
                                desktop_.TemplatePath(), &desktop_);
  } catch (const RunTimeError& error) {
    proof.failure = error.Description();
  } catch (const RunCancelled&) {
    return {};
  }
  if (!proof.differences.empty()) {
    (new ProofWindow(merge, proof, desktop_, window()))->show();
  }
  return ". " + ToQt(SummaryOf(proof));
}

}  // namespace merivane::desktop
