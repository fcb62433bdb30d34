#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace MCBin {

// Unpacks what is read from a file in the gzip or zstd format. Several packed parts one after the
// other are one text, as with gzip and zstd.
class Unpacker {
 public:
  // Whether a file that begins so is one of the two.
  static bool IsPacked(std::string_view start);

  // Continues the file behind `start`, which has been read from it; `name` is for messages.
  Unpacker(int file, std::string name, std::string_view start);
  ~Unpacker();
  Unpacker(const Unpacker&) = delete;
  Unpacker& operator=(const Unpacker&) = delete;

  // At least a byte of the text; 0 at its end. Throws Refusal for a file that is cut off or
  // damaged, and what InputStream::Read() throws.
  std::size_t Read(char* to, std::size_t room);

  // Packed bytes taken from the file so far.
  std::uint64_t GetBytesRead() const { return fBytesRead; }

 private:
  class Format;
  class Gzip;
  class Zstd;

  void Refill();

  const int fFile;
  const std::string fName;
  std::unique_ptr<char[]> fPacked;
  std::string_view fPending;  // packed bytes that are not unpacked yet
  bool fAtFileEnd = false;
  std::uint64_t fBytesRead = 0;
  std::unique_ptr<Format> fFormat;
};

}  // namespace MCBin
