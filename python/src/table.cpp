#include "table.h"

#include <mcbinmodel/model/refusal.h>
#include <nanobind/stl/vector.h>

#include <bit>
#include <map>
#include <string_view>
#include <utility>

#include "arrowreader.h"
#include "cells.h"
#include "hostcalls.h"

namespace nb = nanobind;

namespace MCBinPython {

namespace {

using MCBinModel::Refusal;

// A view of an object's memory by the buffer protocol. Made and released by who holds the
// interpreter.
class Buffer {
 public:
  explicit Buffer(nb::handle object) {
    if (PyObject_GetBuffer(object.ptr(), &fView, PyBUF_STRIDES | PyBUF_FORMAT) != 0) {
      throw nb::python_error();
    }
  }
  Buffer(const Buffer&) = delete;
  Buffer& operator=(const Buffer&) = delete;
  ~Buffer() { PyBuffer_Release(&fView); }

  int GetDimensions() const { return fView.ndim; }
  std::size_t GetExtent(int axis) const { return static_cast<std::size_t>(fView.shape[axis]); }

  // An empty column with the type of the values.
  Column MakeColumn(const std::string& name) const {
    Column column;
    column.name = name;
    column.storage = StorageOf(fView.format, fView.itemsize);
    column.type = column.storage == Storage::kOther ? fView.format : "number";
    if (column.storage == Storage::kOther) {
      throw nb::type_error(("column '" + name + "' holds no plain numbers").c_str());
    }
    return column;
  }

  // The values along the first axis, of a matrix those of one column.
  Chunk MakeChunk(std::size_t column = 0) const {
    Chunk chunk;
    chunk.length = GetExtent(0);
    chunk.stride = fView.strides[0];
    chunk.values = static_cast<const char*>(fView.buf);
    if (fView.ndim > 1) chunk.values += static_cast<std::ptrdiff_t>(column) * fView.strides[1];
    return chunk;
  }

 private:
  // Of a letter of the module struct, which may stand behind one for native order, and the size.
  static Storage StorageOf(std::string_view format, Py_ssize_t size) {
    constexpr Storage kSigned[] = {Storage::kInt8, Storage::kInt16, Storage::kInt32,
                                   Storage::kInt64};
    constexpr Storage kUnsigned[] = {Storage::kUInt8, Storage::kUInt16, Storage::kUInt32,
                                     Storage::kUInt64};
    if (format.size() == 2 && (format.front() == '=' || format.front() == '@')) {
      format.remove_prefix(1);
    }
    if (format.size() != 1 || size < 1 || size > 8) return Storage::kOther;
    const auto bits = std::bit_width(static_cast<unsigned>(size)) - 1;
    if (format == "e") return Storage::kFloat16;
    if (format == "f") return Storage::kFloat32;
    if (format == "d") return Storage::kFloat64;
    if (std::string_view("bhilq").find(format) != std::string_view::npos) return kSigned[bits];
    if (std::string_view("?BHILQ").find(format) != std::string_view::npos) return kUnsigned[bits];
    return Storage::kOther;
  }

  Py_buffer fView{};
};

// Texts of Python, which keep their UTF-8 as long as they live.
struct PythonTexts {
  nb::list objects;
  Cells cells;

  explicit PythonTexts(nb::list list) : objects(std::move(list)) {
    const std::size_t count = nb::len(objects);
    cells.validity.assign((count + 7) / 8, 0);
    cells.texts.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
      const nb::handle text = objects[i];
      if (text.is_none()) continue;
      Py_ssize_t size = 0;
      const char* const bytes = PyUnicode_AsUTF8AndSize(text.ptr(), &size);
      if (bytes == nullptr) throw nb::python_error();
      cells.texts[i] = {bytes, static_cast<std::size_t>(size)};
      cells.validity[i / 8] |= static_cast<std::uint8_t>(1U << (i % 8));
    }
  }
};

template <typename Structure>
Structure& FromCapsule(nb::handle capsule, const char* name) {
  void* const pointer = PyCapsule_GetPointer(capsule.ptr(), name);
  if (pointer == nullptr) throw nb::python_error();
  auto& structure = *static_cast<Structure*>(pointer);
  if (structure.release == nullptr) throw Refusal("the Arrow data were taken already");
  return structure;
}

}  // namespace

void Table::Add(Column column) {
  if (!fColumns.empty() && column.length != fLength) {
    throw Refusal(MCBinModel::RefusalCode::kInput,
                  {.place = {}, .subject = column.name, .detail = {}},
                  "column '" + column.name + "' has " + std::to_string(column.length) +
                      " values, others have " + std::to_string(fLength));
  }
  fLength = column.length;
  fColumns.push_back(std::move(column));
}

void Table::AddNumbers(const std::string& name, nb::handle buffer, bool isTime,
                       const std::string& unit) {
  static const std::map<std::string, TimeUnit> kUnits = {
      {"", TimeUnit::kNone},           {"D", TimeUnit::kDays},
      {"s", TimeUnit::kSeconds},       {"ms", TimeUnit::kMilliseconds},
      {"us", TimeUnit::kMicroseconds}, {"ns", TimeUnit::kNanoseconds}};
  const auto view = std::make_shared<const Buffer>(buffer);
  if (view->GetDimensions() != 1) {
    throw nb::value_error(("column '" + name + "' does not have one dimension").c_str());
  }
  Column column = view->MakeColumn(name);
  column.lowestIsMissing = isTime;
  column.unit = kUnits.at(unit);
  column.Add(view->MakeChunk());
  fOwners.push_back(view);
  Add(std::move(column));
}

void Table::AddMatrix(const std::vector<std::string>& names, nb::handle buffer) {
  const auto view = std::make_shared<const Buffer>(buffer);
  if (view->GetDimensions() != 2 || view->GetExtent(1) != names.size()) {
    throw nb::value_error("an array of rows has two dimensions and a name for each column");
  }
  fOwners.push_back(view);
  for (std::size_t i = 0; i < names.size(); ++i) {
    Column column = view->MakeColumn(names[i]);
    column.Add(view->MakeChunk(i));
    Add(std::move(column));
  }
}

void Table::AddTexts(const std::string& name, nb::list texts) {
  const auto owned = std::make_shared<const PythonTexts>(std::move(texts));
  Column column;
  column.name = name;
  column.storage = Storage::kTextCells;
  column.type = "text";
  column.isText = true;
  Chunk chunk;
  chunk.length = owned->cells.texts.size();
  chunk.validity = owned->cells.validity.data();
  chunk.values = reinterpret_cast<const char*>(owned->cells.texts.data());
  chunk.stride = sizeof(std::string_view);
  column.Add(std::move(chunk));
  fOwners.push_back(owned);
  Add(std::move(column));
}

void Table::AddDictionary(const std::string& name, nb::handle indexes, nb::list values,
                          bool isOrdered) {
  const auto view = std::make_shared<const Buffer>(indexes);
  Column column = view->MakeColumn(name);
  Chunk chunk = view->MakeChunk();
  column.type = "dictionary";
  column.isDictionary = true;
  column.isOrdered = isOrdered;
  column.isText = nb::len(values) == 0 || PyUnicode_Check(nb::handle(values[0]).ptr());
  if (column.isText) {
    const auto owned = std::make_shared<const PythonTexts>(std::move(values));
    chunk.dictionary = {owned, &owned->cells};
    fOwners.push_back(owned);
  } else {
    Cells cells;
    cells.numbers = nb::cast<std::vector<double>>(values);
    cells.validity.assign((cells.numbers.size() + 7) / 8, 0xFF);
    chunk.dictionary = std::make_shared<const Cells>(std::move(cells));
  }
  column.Add(std::move(chunk));
  fOwners.push_back(view);
  Add(std::move(column));
}

void Table::AddArrowStream(nb::handle stream, const std::string& name) {
  auto& source = FromCapsule<ArrowArrayStream>(stream, "arrow_array_stream");
  ArrowTable table = [&] {
    HostCalls host{nb::none()};
    const nb::gil_scoped_release unlocked;  // others may make the batches, in threads of their own
    return TakeStream(source, name, [&] { host.QueryCancel(); });
  }();
  fOwners.push_back(std::move(table.owner));
  for (Column& column : table.columns) Add(std::move(column));
}

void Table::AddArrowArray(nb::handle schema, nb::handle array, const std::string& name) {
  ArrowTable table = TakeArray(FromCapsule<ArrowSchema>(schema, "arrow_schema"),
                               FromCapsule<ArrowArray>(array, "arrow_array"), name);
  fOwners.push_back(std::move(table.owner));
  for (Column& column : table.columns) Add(std::move(column));
}

}  // namespace MCBinPython
