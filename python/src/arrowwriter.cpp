#include "arrowwriter.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace MCBinPython {

namespace {

template <typename Structure>
void ReleaseStructure(Structure* structure) {
  if (structure != nullptr && structure->release != nullptr) structure->release(structure);
}

// What a schema or an array points to; released with it, and its parts with it.
struct SchemaParts {
  std::string format;
  std::string name;
  std::vector<ArrowSchema> children;
  std::vector<ArrowSchema*> pointers;
  std::unique_ptr<ArrowSchema> dictionary;
};

struct ArrayParts {
  std::vector<FrameBuffer> buffers;
  std::vector<const void*> bufferPointers;
  std::vector<ArrowArray> children;
  std::vector<ArrowArray*> pointers;
  std::unique_ptr<ArrowArray> dictionary;
};

template <typename Structure, typename Parts>
void Release(Structure* structure) {
  const std::unique_ptr<Parts> parts(static_cast<Parts*>(structure->private_data));
  for (Structure& child : parts->children) ReleaseStructure(&child);
  ReleaseStructure(parts->dictionary.get());
  structure->release = nullptr;
}

// Hands the parts over to the structure.
template <typename Structure, typename Parts>
void Complete(Structure& structure, std::unique_ptr<Parts> parts) {
  for (Structure& child : parts->children) parts->pointers.push_back(&child);
  structure.n_children = static_cast<std::int64_t>(parts->children.size());
  structure.children = parts->pointers.data();
  structure.dictionary = parts->dictionary.get();
  structure.release = Release<Structure, Parts>;
  structure.private_data = parts.release();
}

void ExportColumnSchema(const FrameColumn& column, ArrowSchema& schema) {
  auto parts = std::make_unique<SchemaParts>();
  schema = {};
  parts->format = column.format;
  parts->name = column.name;
  schema.format = parts->format.c_str();
  schema.name = parts->name.c_str();
  schema.flags = kArrowNullable | (column.dictionary ? kArrowDictionaryOrdered : 0);
  parts->children.resize(column.children.size());
  for (std::size_t i = 0; i < column.children.size(); ++i) {
    ExportColumnSchema(column.children[i], parts->children[i]);
  }
  if (column.dictionary) {
    parts->dictionary = std::make_unique<ArrowSchema>();
    ExportColumnSchema(*column.dictionary, *parts->dictionary);
  }
  Complete(schema, std::move(parts));
}

void ExportColumn(const FrameColumn& column, ArrowArray& array) {
  auto parts = std::make_unique<ArrayParts>();
  array = {};
  array.length = static_cast<std::int64_t>(column.length);
  array.null_count = static_cast<std::int64_t>(column.missingCount);
  parts->buffers = column.buffers;
  for (const FrameBuffer& buffer : parts->buffers) parts->bufferPointers.push_back(buffer.data);
  array.n_buffers = static_cast<std::int64_t>(parts->buffers.size());
  array.buffers = parts->bufferPointers.data();
  parts->children.resize(column.children.size());
  for (std::size_t i = 0; i < column.children.size(); ++i) {
    ExportColumn(column.children[i], parts->children[i]);
  }
  if (column.dictionary) {
    parts->dictionary = std::make_unique<ArrowArray>();
    ExportColumn(*column.dictionary, *parts->dictionary);
  }
  Complete(array, std::move(parts));
}

// The frame as a struct with a field for each column.
FrameColumn AsStruct(const Frame& frame) {
  FrameColumn whole;
  whole.format = "+s";
  whole.length = frame.length;
  whole.buffers.emplace_back();
  whole.children = frame.columns;
  return whole;
}

struct StreamParts {
  FrameColumn whole;
  bool isRead = false;
};

StreamParts& PartsOf(ArrowArrayStream* stream) {
  return *static_cast<StreamParts*>(stream->private_data);
}

int GetSchema(ArrowArrayStream* stream, ArrowSchema* schema) {
  ExportColumnSchema(PartsOf(stream).whole, *schema);
  return 0;
}

int GetNext(ArrowArrayStream* stream, ArrowArray* array) {
  *array = {};
  if (!std::exchange(PartsOf(stream).isRead, true)) ExportColumn(PartsOf(stream).whole, *array);
  return 0;
}

const char* GetLastError(ArrowArrayStream* /*stream*/) { return nullptr; }

void ReleaseStream(ArrowArrayStream* stream) {
  delete &PartsOf(stream);
  stream->release = nullptr;
}

}  // namespace

void ExportSchema(const Frame& frame, ArrowSchema& schema) {
  ExportColumnSchema(AsStruct(frame), schema);
}

void ExportStream(const Frame& frame, ArrowArrayStream& stream) {
  auto parts = std::make_unique<StreamParts>(StreamParts{AsStruct(frame)});
  stream = {GetSchema, GetNext, GetLastError, ReleaseStream, parts.release()};
}

}  // namespace MCBinPython
