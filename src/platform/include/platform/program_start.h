// Programs that live on without the one that started them.
#pragma once

#include <functional>
#include <string>

namespace merivane::platform {

// Starts a command line (UTF-8, read up to a NUL) without waiting; False where it can't be started.
// Words end at blanks outside double quotes; a program without a folder is searched on the path.
// Outside Windows the program gets a session of its own and none of the standard streams.
[[nodiscard]] bool StartDetached(const std::string& commandLine);

// Opens a page, or a file by its address, in the user's program for it. A result below 33 is a
// failure, as of the Windows shell; 2 says that there is no opener, or that it failed within three
// seconds. `meanwhile` is called now and then during that time.
[[nodiscard]] int OpenInBrowser(
    const std::string& url, const std::function<void()>& meanwhile = [] {});

}  // namespace merivane::platform
