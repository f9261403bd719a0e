// The window of the direction from plan to model.
#pragma once

#include <string>
#include <utility>

#include "form_window.h"
#include "shell/frmProjectToIDEF3.h"

namespace merivane::desktop {

class ProjectToModelWindow : public FormWindow {
 public:
  ProjectToModelWindow(frmProjectToIDEF3& form, QtDesktop& desktop);

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

  frmProjectToIDEF3& form_;
  QComboBox* projects_ = nullptr;
};

}  // namespace merivane::desktop
