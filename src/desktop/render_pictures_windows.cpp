#include <fcntl.h>
#include <io.h>

#include <QBuffer>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include "desktop/render_pictures.h"
#include "paint_figure.h"
#include "pictures/packed_pictures.h"
#include "qt_text.h"
#include "runtime/run_time_error.h"

namespace merivane::desktop {

namespace {

std::string BytesOf(const QByteArray& bytes) { return bytes.toStdString(); }

void Paint(QPainter& painter, const Picture& picture, double scale) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.resetTransform();
  painter.scale(scale, scale);
  for (const Figure& figure : picture.figures) PaintFigure(painter, figure);
}

Rendering ToPng(const std::vector<Picture>& all) {
  const Picture picture = Stacked(all);
  const double scale = PngScale(picture);
  const auto dots = [scale](double pixels) {
    return std::max(1, static_cast<int>(pixels * scale));
  };
  QImage image(dots(picture.width), dots(picture.height), QImage::Format_RGB32);
  if (image.isNull()) CanNotDraw("it is too large");
  image.fill(Qt::white);
  {
    QPainter painter(&image);
    Paint(painter, picture, scale);
  }
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!image.save(&buffer, "PNG")) CanNotDraw("its library gives no reason");
  return {.bytes = BytesOf(bytes), .factor = scale / kSharpness};
}

// Each on a page of its own size.
Rendering ToPdf(const std::vector<Picture>& pictures) {
  constexpr int kDotsOfPoint = 10;
  constexpr int kPointsOfInch = 72;
  double smallest = kPointsOfPixel;
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&buffer);
    writer.setResolution(kPointsOfInch * kDotsOfPoint);
    writer.setTitle(ToQt(pictures.front().title));
    QPainter painter;
    for (const Picture& picture : pictures) {
      const double scale = PdfScale(picture);
      smallest = std::min(smallest, scale);
      const QSizeF page(std::ceil(picture.width * scale), std::ceil(picture.height * scale));
      writer.setPageLayout({QPageSize(page, QPageSize::Point, {}, QPageSize::ExactMatch),
                            QPageLayout::Portrait, QMarginsF(), QPageLayout::Point});
      const bool isReady = painter.isActive() ? writer.newPage() : painter.begin(&writer);
      if (!isReady) CanNotDraw("its library gives no reason");
      Paint(painter, picture, scale * kDotsOfPoint);
    }
  }
  return {.bytes = BytesOf(bytes), .factor = smallest / kPointsOfPixel};
}

std::string AllOf(std::FILE* stream) {
  std::string bytes;
  char block[1U << 16U];
  while (const std::size_t got = std::fread(block, 1, sizeof block, stream))
    bytes.append(block, got);
  return bytes;
}

int Answer(const std::string& bytes, int status) {
  std::fwrite(bytes.data(), 1, bytes.size(), stdout);
  return std::fflush(stdout) == 0 ? status : 1;
}

}  // namespace

int RenderForAnother(int argc, char** argv) {
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  // No window and no screen, which a service has none of, but the system's fonts; whatever the
  // program that starts this one has for itself.
  qputenv("QT_QPA_PLATFORM", "minimal:enable_fonts:freetype");
  const QGuiApplication application(argc, argv);
  try {
    const std::vector<Picture> pictures = UnpackedPictures(AllOf(stdin));
    if (pictures.empty() || argc < 3) return 2;
    if (QFontDatabase::families().isEmpty()) CanNotDraw("no font is installed");
    const bool isPng = std::string_view(argv[2]) == ".png";
    return Answer(Packed(isPng ? ToPng(pictures) : ToPdf(pictures)), 0);
  } catch (const RunTimeError& error) {
    return Answer(error.Description(), 1);
  } catch (const std::exception&) {
    return 1;
  }
}

}  // namespace merivane::desktop
