#include "element_page.h"

#include <QUrl>

#include "qt_text.h"

namespace merivane::desktop {

ElementPage::ElementPage() {
  setObjectName("properties");
  setAccessibleName("Properties");
  setOpenLinks(false);
  setTextInteractionFlags(Qt::TextBrowserInteraction | Qt::TextSelectableByKeyboard);
  connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl&) {
    if (OnOpen) OnOpen(line_);
  });
}

void ElementPage::Show(const Element& element) {
  line_ = element.line;
  QString rows;
  for (const Property& property : element.properties) {
    const QString text = ToQt(property.text).toHtmlEscaped().replace('\n', "<br>");
    rows += QString("<tr><th align='left'>%1&nbsp;</th><td>%2</td></tr>")
                .arg(ToQt(property.name).toHtmlEscaped(), text);
  }
  if (line_ > 0) rows += "<tr><td></td><td><a href='open'>Open the text there</a></td></tr>";
  setHtml("<table cellpadding='2'>" + rows + "</table>");
}

}  // namespace merivane::desktop
