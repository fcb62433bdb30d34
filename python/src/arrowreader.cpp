#include "arrowreader.h"

#include <mcbinmodel/model/refusal.h>

#include <charconv>
#include <string_view>
#include <utility>

#include "cells.h"

namespace MCBinPython {

namespace {

// Takes over a structure and releases it in the end.
template <typename Structure>
class Owned {
 public:
  Owned() = default;
  explicit Owned(Structure& other) : fStructure(other) { other.release = nullptr; }
  Owned(Owned&& other) noexcept : fStructure(std::exchange(other.fStructure, Structure{})) {}
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  Owned& operator=(Owned&&) = delete;
  ~Owned() {
    if (fStructure.release != nullptr) fStructure.release(&fStructure);
  }

  Structure& Get() { return fStructure; }
  const Structure& Get() const { return fStructure; }

 private:
  Structure fStructure{};
};

struct Batches {
  Owned<ArrowSchema> schema;
  std::vector<Owned<ArrowArray>> arrays;
};

struct Format {
  Storage storage;
  std::ptrdiff_t stride;
  const char* type;
};

Format FormatOfLetter(char letter) {
  switch (letter) {
    case 'n':
      return {Storage::kNull, 0, "null"};
    case 'b':
      return {Storage::kBit, 0, "bool"};
    case 'c':
      return {Storage::kInt8, 1, "int8"};
    case 'C':
      return {Storage::kUInt8, 1, "uint8"};
    case 's':
      return {Storage::kInt16, 2, "int16"};
    case 'S':
      return {Storage::kUInt16, 2, "uint16"};
    case 'i':
      return {Storage::kInt32, 4, "int32"};
    case 'I':
      return {Storage::kUInt32, 4, "uint32"};
    case 'l':
      return {Storage::kInt64, 8, "int64"};
    case 'L':
      return {Storage::kUInt64, 8, "uint64"};
    case 'e':
      return {Storage::kFloat16, 2, "float16"};
    case 'f':
      return {Storage::kFloat32, 4, "float32"};
    case 'g':
      return {Storage::kFloat64, 8, "float64"};
    case 'u':
      return {Storage::kText32, 4, "string"};
    case 'U':
      return {Storage::kText64, 8, "large_string"};
    default:
      return {Storage::kOther, 0, nullptr};
  }
}

// Of dates and moments: "tdD", "tdm" or "tsu:zone"; times of day and durations are numbers.
TimeUnit UnitOf(std::string_view format) {
  if (!format.starts_with("td") && !format.starts_with("ts")) return TimeUnit::kNone;
  switch (format.size() < 3 ? '\0' : format[2]) {
    case 'D':
      return TimeUnit::kDays;
    case 's':
      return TimeUnit::kSeconds;
    case 'm':
      return TimeUnit::kMilliseconds;
    case 'u':
      return TimeUnit::kMicroseconds;
    case 'n':
      return TimeUnit::kNanoseconds;
    default:
      return TimeUnit::kNone;
  }
}

// Days are 32 bits, as are short times of day.
Format FormatOfTime(std::string_view format) {
  const bool isShort = format == "tdD" || format == "tts" || format == "ttm";
  if (format.size() < 3 || format.starts_with("ti")) return {Storage::kOther, 0, nullptr};
  return isShort ? Format{Storage::kInt32, 4, "time"} : Format{Storage::kInt64, 8, "time"};
}

// "d:precision,scale" or "d:precision,scale,bits".
DecimalFormat ReadDecimalFormat(std::string_view format) {
  DecimalFormat decimal{16, 0};
  const std::string_view scale = format.substr(format.find(',') + 1);
  const auto end = std::from_chars(scale.data(), scale.data() + scale.size(), decimal.scale).ptr;
  const char* const last = scale.data() + scale.size();
  if (end == last) return decimal;
  int bits = 0;
  std::from_chars(end + 1, last, bits);
  decimal.bytes = static_cast<std::size_t>(bits) / 8;
  return decimal;
}

Format FormatOf(std::string_view format, DecimalFormat& decimal) {
  if (format.size() == 1) return FormatOfLetter(format.front());
  if (format.starts_with('t')) return FormatOfTime(format);
  if (format == "vu") return {Storage::kTextView, 16, "string_view"};
  if (!format.starts_with("d:")) return {Storage::kOther, 0, nullptr};
  decimal = ReadDecimalFormat(format);
  if (decimal.bytes < 4 || decimal.bytes > 32) return {Storage::kOther, 0, nullptr};
  return {Storage::kDecimal, static_cast<std::ptrdiff_t>(decimal.bytes), "decimal"};
}

bool IsText(Storage storage) {
  return storage == Storage::kText32 || storage == Storage::kText64 ||
         storage == Storage::kTextView;
}

// A column without values yet; `stride` is that of its values.
Column MakeColumn(const ArrowSchema& schema, std::string name, std::ptrdiff_t& stride) {
  Column column;
  column.name = std::move(name);
  const Format format = FormatOf(schema.format, column.decimal);
  column.storage = format.storage;
  column.type = format.type != nullptr ? format.type : "Arrow type " + std::string(schema.format);
  column.isText = IsText(format.storage);
  column.unit = UnitOf(schema.format);
  stride = format.stride;
  if (schema.dictionary == nullptr) return column;
  DecimalFormat unused;
  const Format values = FormatOf(schema.dictionary->format, unused);
  const bool isOfTimes = UnitOf(schema.dictionary->format) != TimeUnit::kNone;
  if (values.storage == Storage::kOther || isOfTimes) column.storage = Storage::kOther;
  column.isDictionary = true;
  column.isOrdered = (schema.flags & kArrowDictionaryOrdered) != 0;
  column.isText = IsText(values.storage);
  column.type = isOfTimes ? "dictionary of dates" : "dictionary";
  return column;
}

void AddChunk(Column& column, std::ptrdiff_t stride, const ArrowSchema& schema,
              const ArrowArray& array, std::size_t offset, std::size_t length);

std::shared_ptr<const Cells> ReadDictionary(const ArrowSchema& schema, const ArrowArray& array) {
  std::ptrdiff_t stride = 0;
  Column values = MakeColumn(schema, {}, stride);
  AddChunk(values, stride, schema, array, 0, static_cast<std::size_t>(array.length));
  return std::make_shared<const Cells>(ReadCells(values));
}

// The part of an array that a struct around it shows, or all of it.
void AddChunk(Column& column, std::ptrdiff_t stride, const ArrowSchema& schema,
              const ArrowArray& array, std::size_t offset, std::size_t length) {
  Chunk chunk;
  chunk.length = length;
  if (column.storage != Storage::kOther && column.storage != Storage::kNull && length > 0) {
    chunk.first = static_cast<std::size_t>(array.offset) + offset;
    if (array.null_count != 0) chunk.validity = static_cast<const std::uint8_t*>(array.buffers[0]);
    chunk.values = static_cast<const char*>(array.buffers[1]);
    chunk.stride = stride;
    if (column.storage == Storage::kTextView) {
      chunk.textBuffers = array.buffers + 2;
    } else if (column.isText && !column.isDictionary) {
      chunk.texts = static_cast<const char*>(array.buffers[2]);
    }
    if (column.isDictionary)
      chunk.dictionary = ReadDictionary(*schema.dictionary, *array.dictionary);
  }
  column.Add(std::move(chunk));
}

bool IsStruct(const ArrowSchema& schema) { return std::string_view(schema.format) == "+s"; }

void CheckRows(const ArrowArray& array) {
  if (array.null_count == 0 || array.n_buffers == 0 || array.buffers[0] == nullptr) return;
  const auto* const validity = static_cast<const std::uint8_t*>(array.buffers[0]);
  for (std::int64_t row = array.offset; row < array.offset + array.length; ++row) {
    if (((validity[row / 8] >> (row % 8)) & 1) != 0) continue;
    throw MCBinModel::Refusal("a row of the table is missing as a whole");
  }
}

std::string NameOf(const ArrowSchema& schema) { return schema.name == nullptr ? "" : schema.name; }

std::vector<Column> MakeColumns(const Batches& batches, const std::string& name) {
  const ArrowSchema& schema = batches.schema.Get();
  const bool isTable = name.empty();
  const std::size_t fieldCount = isTable ? static_cast<std::size_t>(schema.n_children) : 1;
  std::vector<Column> columns;
  for (std::size_t i = 0; i < fieldCount; ++i) {
    const ArrowSchema& field = isTable ? *schema.children[i] : schema;
    std::ptrdiff_t stride = 0;
    Column column = MakeColumn(field, isTable ? NameOf(field) : name, stride);
    for (const Owned<ArrowArray>& owned : batches.arrays) {
      const ArrowArray& array = owned.Get();
      const auto length = static_cast<std::size_t>(array.length);
      if (isTable) {
        AddChunk(column, stride, field, *array.children[i], static_cast<std::size_t>(array.offset),
                 length);
      } else {
        AddChunk(column, stride, field, array, 0, length);
      }
    }
    columns.push_back(std::move(column));
  }
  return columns;
}

ArrowTable MakeTable(std::shared_ptr<Batches> batches, const std::string& name) {
  if (name.empty()) {
    if (!IsStruct(batches->schema.Get())) {
      throw MCBinModel::Refusal("a table is expected, not a column; give it a name in a dict");
    }
    for (const Owned<ArrowArray>& array : batches->arrays) CheckRows(array.Get());
  }
  ArrowTable table;
  table.columns = MakeColumns(*batches, name);
  table.owner = std::move(batches);
  return table;
}

void CheckAnswer(ArrowArrayStream& stream, int answer) {
  if (answer == 0) return;
  const char* const why = stream.get_last_error(&stream);
  throw MCBinModel::Refusal("the table cannot be read: " +
                            std::string(why != nullptr ? why : "no reason is given"));
}

}  // namespace

ArrowTable TakeStream(ArrowArrayStream& stream, const std::string& name,
                      const std::function<void()>& pause) {
  Owned<ArrowArrayStream> owned(stream);
  ArrowArrayStream& source = owned.Get();
  auto batches = std::make_shared<Batches>();
  CheckAnswer(source, source.get_schema(&source, &batches->schema.Get()));
  while (true) {
    pause();
    Owned<ArrowArray> array;
    CheckAnswer(source, source.get_next(&source, &array.Get()));
    if (array.Get().release == nullptr) break;
    batches->arrays.push_back(std::move(array));
  }
  return MakeTable(std::move(batches), name);
}

ArrowTable TakeArray(ArrowSchema& schema, ArrowArray& array, const std::string& name) {
  Owned<ArrowSchema> ownedSchema(schema);
  auto batches = std::make_shared<Batches>(Batches{std::move(ownedSchema), {}});
  batches->arrays.emplace_back(array);
  return MakeTable(std::move(batches), name);
}

}  // namespace MCBinPython
