#include "io/unpacker.h"

#include <fmt/format.h>
#include <zlib.h>
#include <zstd.h>
#include <zstd_errors.h>

#include <algorithm>
#include <new>
#include <utility>

#include "binmodel/model/refusal.h"
#include "io/inputstream.h"

namespace MCBin {

namespace {

constexpr std::string_view kGzipMagic("\x1F\x8B");
constexpr std::string_view kZstdMagic("\x28\xB5\x2F\xFD");
constexpr std::size_t kChunkBytes = std::size_t{1} << 17;

bool StartsWith(std::string_view text, std::string_view magic) {
  return text.substr(0, magic.size()) == magic;
}

}  // namespace

// One of the two: unpacks as much as fits. False when the bytes are not of this format.
class Unpacker::Format {
 public:
  virtual ~Format() = default;
  virtual bool Unpack(std::string_view& packed, char* to, std::size_t room, std::size_t& got) = 0;

  // Nothing is open: the packed file may end here.
  bool IsBetweenParts() const { return fIsBetweenParts; }

 protected:
  bool fIsBetweenParts = true;
};

class Unpacker::Gzip : public Unpacker::Format {
 public:
  Gzip() {
    constexpr int kWithGzipHeader = 16;
    if (inflateInit2(&fStream, MAX_WBITS + kWithGzipHeader) != Z_OK) throw std::bad_alloc();
  }
  ~Gzip() override { inflateEnd(&fStream); }
  Gzip(const Gzip&) = delete;
  Gzip& operator=(const Gzip&) = delete;

  bool Unpack(std::string_view& packed, char* to, std::size_t room, std::size_t& got) override {
    if (fIsBetweenParts) {
      if (fHasPart) SkipPadding(packed);
      if (packed.empty()) return true;
      if (inflateReset(&fStream) != Z_OK) return false;
    }
    fIsBetweenParts = false;
    fHasPart = true;
    constexpr std::size_t kMost = std::size_t{1} << 30;  // its counts are unsigned int
    fStream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
    fStream.avail_in = static_cast<uInt>(std::min(packed.size(), kMost));
    fStream.next_out = reinterpret_cast<Bytef*>(to);
    fStream.avail_out = static_cast<uInt>(std::min(room, kMost));
    const std::size_t given = fStream.avail_out;
    const int result = inflate(&fStream, Z_NO_FLUSH);
    got = given - fStream.avail_out;
    packed.remove_prefix(
        static_cast<std::size_t>(reinterpret_cast<char*>(fStream.next_in) - packed.data()));
    fIsBetweenParts = result == Z_STREAM_END;
    return result == Z_OK || result == Z_STREAM_END || result == Z_BUF_ERROR;
  }

 private:
  // Tapes fill their last block up.
  static void SkipPadding(std::string_view& packed) {
    packed.remove_prefix(std::min(packed.find_first_not_of('\0'), packed.size()));
  }

  z_stream fStream = {};
  bool fHasPart = false;
};

class Unpacker::Zstd : public Unpacker::Format {
 public:
  Zstd() : fStream(ZSTD_createDStream()) {
    if (fStream == nullptr) throw std::bad_alloc();
    // Also of `zstd --long=31`; the memory is taken as the text grows.
    ZSTD_DCtx_setParameter(fStream, ZSTD_d_windowLogMax,
                           ZSTD_dParam_getBounds(ZSTD_d_windowLogMax).upperBound);
  }
  ~Zstd() override { ZSTD_freeDStream(fStream); }
  Zstd(const Zstd&) = delete;
  Zstd& operator=(const Zstd&) = delete;

  bool Unpack(std::string_view& packed, char* to, std::size_t room, std::size_t& got) override {
    ZSTD_inBuffer from = {packed.data(), packed.size(), 0};
    ZSTD_outBuffer into = {to, room, 0};
    const std::size_t result = ZSTD_decompressStream(fStream, &into, &from);
    got = into.pos;
    packed.remove_prefix(from.pos);
    fIsBetweenParts = result == 0;
    if (ZSTD_getErrorCode(result) == ZSTD_error_memory_allocation) throw std::bad_alloc();
    return ZSTD_isError(result) == 0;
  }

 private:
  ZSTD_DStream* const fStream;
};

bool Unpacker::IsPacked(std::string_view start) {
  return StartsWith(start, kGzipMagic) || StartsWith(start, kZstdMagic);
}

Unpacker::Unpacker(int file, std::string name, std::string_view start)
    : fFile(file),
      fName(std::move(name)),
      fPacked(std::make_unique<char[]>(std::max(kChunkBytes, start.size()))),
      fPending(fPacked.get(), start.size()),
      fBytesRead(start.size()) {
  std::copy(start.begin(), start.end(), fPacked.get());
  if (StartsWith(start, kGzipMagic)) {
    fFormat = std::make_unique<Gzip>();
  } else {
    fFormat = std::make_unique<Zstd>();
  }
}

Unpacker::~Unpacker() = default;

std::size_t Unpacker::Read(char* to, std::size_t room) {
  for (;;) {
    if (fPending.empty() && !fAtFileEnd) Refill();
    const bool isDone = fPending.empty() && fAtFileEnd;
    if (isDone && fFormat->IsBetweenParts()) return 0;
    std::size_t got = 0;
    const bool isSound = fFormat->Unpack(fPending, to, room, got);
    if (got > 0) return got;
    if (isSound && !isDone) continue;
    throw MCBinModel::Refusal(
        MCBinModel::RefusalCode::kWrongFile, {fName, {}, {}},
        fmt::format("this packed file is {}", isSound ? "cut off" : "damaged"));
  }
}

void Unpacker::Refill() {
  const std::size_t got = InputStream::Read(fFile, fName, fPacked.get(), kChunkBytes);
  fPending = {fPacked.get(), got};
  fAtFileEnd = got == 0;
  fBytesRead += got;
}

}  // namespace MCBin
