// The window of the direction from plan to model.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "form_window.h"
#include "shell/frmProjectToIDEF3.h"
#include "workbench/file_view.h"

namespace merivane::desktop {

using namespace workbench;

class ProjectToModelWindow : public FormWindow {
 public:
  ProjectToModelWindow(frmProjectToIDEF3& form, QtDesktop& desktop);

  // The user wants to see a merge in pictures. Set before a preview opens.
  std::function<void(const PlannedMerge& merge)> OnShow;

 protected:
  void Draw() override;

 private:
  void AddDatabaseTab(QTabWidget* tabs);
  void AddMpxTab(QTabWidget* tabs);
  void AddXmlTab(QTabWidget* tabs);
  void Ok();
  void AddPreview();
  std::pair<std::string, std::string> PlanAndInterim() const;  // of the tab in front
  void Preview();
  // Of a merge that was run: the plan, the database and its project. Shows what differs; gives what
  // is to be told in a line.
  QString Prove(const PlannedMerge& merge);

  frmProjectToIDEF3& form_;
  QComboBox* projects_ = nullptr;
};

}  // namespace merivane::desktop
