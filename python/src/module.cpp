#include <mcbinning/version.h>
#include <nanobind/nanobind.h>
#include <nanobind/ndarray.h>
#include <nanobind/stl/optional.h>
#include <nanobind/stl/string.h>
#include <nanobind/stl/vector.h>

#include <memory>

#include "arrowwriter.h"
#include "exceptions.h"
#include "frame.h"
#include "model.h"
#include "refinesettings.h"
#include "table.h"

namespace nb = nanobind;
using namespace nb::literals;

namespace MCBinPython {

namespace {

// What a column can be used as.
const char* RoleOf(const Column& column) {
  if (column.storage == Storage::kOther) return "other";
  if (column.isDictionary) return column.isOrdered ? "ordered" : "category";
  return column.isText ? "text" : "number";
}

void BindTable(nb::module_& module) {
  nb::class_<Table>(module, "Table")
      .def(nb::init<>())
      .def("add_numbers", &Table::AddNumbers, "name"_a, "buffer"_a, "is_time"_a, "unit"_a = "")
      .def("add_matrix", &Table::AddMatrix, "names"_a, "buffer"_a)
      .def("add_texts", &Table::AddTexts, "name"_a, "texts"_a)
      .def("add_dictionary", &Table::AddDictionary, "name"_a, "indexes"_a, "values"_a,
           "is_ordered"_a)
      .def("add_arrow_stream", &Table::AddArrowStream, "stream"_a, "name"_a)
      .def("add_arrow_array", &Table::AddArrowArray, "schema"_a, "array"_a, "name"_a)
      .def("__len__", &Table::GetLength)
      .def("width", [](const Table& table) { return table.GetColumns().size(); })
      .def(
          "name",
          [](const Table& table, std::size_t index) { return table.GetColumns().at(index).name; },
          "index"_a)
      .def("names",
           [](const Table& table) {
             nb::list names;
             for (const Column& column : table.GetColumns()) names.append(column.name);
             return names;
           })
      .def(
          "is_time",
          [](const Table& table, std::size_t index) {
            return table.GetColumns().at(index).IsTime();
          },
          "index"_a)
      .def(
          "role",
          [](const Table& table, std::size_t index) {
            return RoleOf(table.GetColumns().at(index));
          },
          "index"_a)
      .def(
          "type",
          [](const Table& table, std::size_t index) { return table.GetColumns().at(index).type; },
          "index"_a);
}

// Moves a structure into a capsule, which releases it unless somebody took it.
template <typename Structure>
nb::object MakeCapsule(std::unique_ptr<Structure> structure, const char* name) {
  PyObject* const capsule = PyCapsule_New(structure.get(), name, [](PyObject* self) {
    auto* const kept = static_cast<Structure*>(PyCapsule_GetPointer(self, PyCapsule_GetName(self)));
    if (kept->release != nullptr) kept->release(kept);
    delete kept;
  });
  if (capsule == nullptr) throw nb::python_error();
  structure.release();
  return nb::steal(capsule);
}

template <typename Value>
nb::object ViewOf(const FrameColumn& column) {
  const FrameBuffer& buffer = column.buffers.at(1);
  auto owner = std::make_unique<std::shared_ptr<const void>>(buffer.owner);
  const nb::capsule capsule(owner.get(), [](void* kept) noexcept {
    delete static_cast<std::shared_ptr<const void>*>(kept);
  });
  owner.release();
  return nb::cast(
      nb::ndarray<nb::numpy, const Value, nb::ndim<1>>(buffer.data, {column.length}, capsule));
}

nb::object ArrayOf(const FrameColumn& column) {
  if (column.format == "i") return ViewOf<std::int32_t>(column);
  if (column.format == "l") return ViewOf<std::int64_t>(column);
  if (column.format == "g") return ViewOf<double>(column);
  throw nb::type_error("this column has no array");
}

// Texts, with None where one is missing, or what indexes stand for.
nb::list LabelsOf(const FrameColumn& column) {
  const auto* const validity = static_cast<const std::uint8_t*>(column.buffers.at(0).data);
  const bool hasNone = column.format == "U" && validity != nullptr;
  nb::list labels;
  for (std::size_t i = 0; i < column.labels.size(); ++i) {
    const bool isThere = !hasNone || ((validity[i / 8] >> (i % 8)) & 1) != 0;
    labels.append(isThere ? nb::cast(column.labels[i]) : nb::none());
  }
  return labels;
}

template <typename Value>
using Values = nb::ndarray<const Value, nb::ndim<1>, nb::c_contig, nb::device::cpu>;

template <typename Value>
std::vector<Value> CopyOf(const Values<Value>& values) {
  return {values.data(), values.data() + values.size()};
}

const FrameColumn& ColumnAt(const Frame& frame, std::size_t index) {
  if (index < frame.columns.size()) return frame.columns[index];
  throw nb::index_error("there is no such column");
}

void BindFrame(nb::module_& module) {
  nb::class_<Frame>(module, "Frame")
      .def(nb::init<>())
      .def("__len__", [](const Frame& frame) { return frame.length; })
      .def("names",
           [](const Frame& frame) {
             nb::list names;
             for (const FrameColumn& column : frame.columns) names.append(column.name);
             return names;
           })
      .def(
          "format", [](const Frame& frame, std::size_t i) { return ColumnAt(frame, i).format; },
          "index"_a)
      .def(
          "missing_count",
          [](const Frame& frame, std::size_t i) { return ColumnAt(frame, i).missingCount; },
          "index"_a)
      .def(
          "array", [](const Frame& frame, std::size_t i) { return ArrayOf(ColumnAt(frame, i)); },
          "index"_a)
      .def(
          "ends",
          [](const Frame& frame, std::size_t i) {
            const FrameColumn& column = ColumnAt(frame, i);
            return nb::make_tuple(ArrayOf(column.children.at(0)), ArrayOf(column.children.at(1)));
          },
          "index"_a)
      .def(
          "labels", [](const Frame& frame, std::size_t i) { return LabelsOf(ColumnAt(frame, i)); },
          "index"_a)
      .def("add_indexes",
           [](Frame& frame, std::string name, const Values<std::int32_t>& indexes) {
             frame.Add(MakeIndexes(std::move(name), CopyOf(indexes)));
           })
      .def("add_labels",
           [](Frame& frame, std::string name, const Values<std::int32_t>& indexes,
              std::vector<std::string> labels) {
             frame.Add(MakeLabels(std::move(name), CopyOf(indexes), std::move(labels)));
           })
      .def("add_intervals",
           [](Frame& frame, std::string name, const Values<double>& left,
              const Values<double>& right) {
             frame.Add(MakeIntervals(std::move(name), CopyOf(left), CopyOf(right)));
           })
      .def("add_counts",
           [](Frame& frame, std::string name, const Values<std::int64_t>& counts) {
             frame.Add(MakeCounts(std::move(name), CopyOf(counts)));
           })
      .def("add_numbers",
           [](Frame& frame, std::string name, const Values<double>& numbers) {
             frame.Add(MakeNumbers(std::move(name), CopyOf(numbers)));
           })
      .def(
          "add_texts",
          [](Frame& frame, std::string name, const std::vector<std::optional<std::string>>& texts) {
            frame.Add(MakeTexts(std::move(name), texts));
          })
      .def("arrow_schema",
           [](const Frame& frame) {
             auto schema = std::make_unique<ArrowSchema>();
             ExportSchema(frame, *schema);
             return MakeCapsule(std::move(schema), "arrow_schema");
           })
      .def("arrow_stream", [](const Frame& frame) {
        auto stream = std::make_unique<ArrowArrayStream>();
        ExportStream(frame, *stream);
        return MakeCapsule(std::move(stream), "arrow_array_stream");
      });
}

}  // namespace

}  // namespace MCBinPython

NB_MODULE(_core, module) {
  module.attr("version") = MCBINNING_VERSION_STRING;
  MCBinPython::RegisterExceptions();
  MCBinPython::BindTable(module);
  MCBinPython::BindFrame(module);
  MCBinPython::BindRefineSettings(module);
  MCBinPython::BindModel(module);
}
