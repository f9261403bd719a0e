// merivane-layout: lays out the graphs on its standard input for the program that started it, which
// tells it when to stop; the layouts go to the standard output.
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <iostream>
#include <iterator>
#include <string>

#include "layout_aside.h"
#include "runtime/helper_process.h"

using namespace merivane;

int main() {
  runtime::GiveUpRights();
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  const std::string graphs(std::istreambuf_iterator<char>(std::cin), {});
  pictures::SendLayouts(
      pictures::UnpackedGraphs(graphs), [] { return pictures::LayOut; },
      [](const void* data, std::size_t size) {
        std::fwrite(data, 1, size, stdout);
        std::fflush(stdout);
      });
}
