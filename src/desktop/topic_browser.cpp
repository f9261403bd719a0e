#include "topic_browser.h"

#include <QImage>

#include "help_file.h"
#include "platform/program_run.h"

namespace merivane::desktop {

using namespace platform;

namespace {

constexpr const char* kScheme = "help";
constexpr int kMargin = 40;  // around a picture, pixels

// Pages take the window's colours, so that they can be read on a dark palette too.
constexpr const char* kStyleSheet =
    "h1 { font-size: x-large; } h2 { font-size: large; } h3 { font-size: medium; }"
    "th { text-align: left; } td, th { padding: 3px 10px 3px 0; vertical-align: top; }"
    "code, pre, tt, kbd { font-family: monospace; }";

}  // namespace

void TopicBrowser::ShowTopic(const QString& topic) {
  setSource(QUrl(QLatin1String(kScheme) + QStringLiteral(":/") + topic));
}

void TopicBrowser::doSetSource(const QUrl& name, QTextDocument::ResourceType type) {
  if (name.scheme().startsWith(QLatin1String("http"))) {
    (void)OpenInBrowser(name.toString().toStdString());
    return;
  }
  QTextBrowser::doSetSource(name, type);
}

QVariant TopicBrowser::loadResource(int type, const QUrl& name) {
  if (type == QTextDocument::StyleSheetResource) return QLatin1String(kStyleSheet);
  const auto bytes = file_ != nullptr ? file_->Read(name.path()) : std::nullopt;
  if (!bytes) {
    return type == QTextDocument::HtmlResource
               ? QVariant(QStringLiteral("<p>This topic is not in the help file.</p>"))
               : QVariant();
  }
  if (type == QTextDocument::ImageResource) return Picture(*bytes);
  return *bytes;
}

QVariant TopicBrowser::Picture(const QByteArray& bytes) const {
  QImage image = QImage::fromData(bytes);
  const qreal scale = devicePixelRatioF();
  const int room = static_cast<int>((viewport()->width() - kMargin) * scale);
  if (image.width() > room && room > 0) image = image.scaledToWidth(room, Qt::SmoothTransformation);
  image.setDevicePixelRatio(scale);
  return image;
}

}  // namespace merivane::desktop
