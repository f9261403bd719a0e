#include "project_picker.h"

#include <QInputDialog>
#include <vector>

#include "desktop/qt_desktop.h"
#include "qt_text.h"
#include "runtime/conversions.h"
#include "store/recordset.h"

namespace merivane::desktop {

std::optional<std::int32_t> PickProject(QtDesktop& desktop, QWidget& window,
                                        Connection& connection) {
  std::vector<std::int32_t> ids;
  QStringList names;
  Recordset rows;
  rows.OpenStatic("select PROJ_ID, PROJ_NAME from MSP_PROJECTS", &connection);
  for (; !rows.Eof(); rows.MoveNext()) {
    if (!IsNumeric(rows.Field(0))) continue;
    ids.push_back(ToInt32(rows.Field(0)));
    names.append(QString("%1  %2").arg(ids.back()).arg(ToQt(Joined(rows.Field(1)))));
  }
  if (ids.empty()) {
    desktop.ShowMessage(
        {FromUtf8(connection.DatabaseName()) + " holds no project.", MessageIcon::kExclamation});
    return std::nullopt;
  }
  if (ids.size() == 1) return ids.front();
  QInputDialog chooser(&window);
  chooser.setWindowTitle("Choose a project");
  chooser.setLabelText("Project:");
  chooser.setComboBoxItems(names);
  desktop.Execute(chooser);
  if (chooser.result() != QDialog::Accepted) return std::nullopt;
  return ids[static_cast<std::size_t>(names.indexOf(chooser.textValue()))];
}

}  // namespace merivane::desktop
