#pragma once

#include <string>
#include <string_view>

#include "io/filedescriptor.h"

namespace MCBin {

// Standard output, for results only.
//
// While it lives, whatever else is written to descriptor 1 is dropped, such as the line of
// libmcbinning about a temporary file that cannot be read, which the tool tells in its own words. A
// reader that went away (a closed pipe) is no error: the rest is dropped.
class ResultStream {
 public:
  ResultStream();
  ~ResultStream();
  ResultStream(const ResultStream&) = delete;
  ResultStream& operator=(const ResultStream&) = delete;

  // All throw Refusal when standard output is closed or cannot be written (a full disk), and
  // Interrupt::Requested.
  void Write(std::string_view text);
  void Flush();

  // Writes what is meant for a program. A terminal is shown its control characters, which names
  // and categories may hold, as escapes.
  void WriteContent(std::string_view text);

  // Ends the output. Some file systems tell only now that a write has failed.
  void Close();

  // Nothing written from now on reaches anybody.
  bool IsReaderGone() const { return fReaderGone; }

 private:
  FileDescriptor fOutput;
  const bool fIsTerminal;
  std::string fPending;
  bool fReaderGone = false;
};

}  // namespace MCBin
