#pragma once

#include <stdexcept>
#include <string>

#include "binmodelexport.h"

namespace MCBinModel {

// Why something was refused. A front end that knows more than the reason says, such as the name
// of an option that helps, words these in its own way.
//
// Behind each code stands what Refusal::GetSubject() and GetDetail() are; where nothing is said
// of one of them, it is empty.
enum class RefusalCode {
  kInput,  // what was read makes no sense, or cannot be read; the reason says all

  // Columns of a file, and what they are to be.
  kUnknownColumn,      // subject: the column that is not there
  kOtherDelimiter,     // the same; the header is one column; detail: what may delimit it
  kColumnTaken,        // subject: an attribute; detail: the name of its bins, which is taken
  kTwoKinds,           // subject: a column that is to be both categorical and continuous
  kTwoUses,            // subject: a column that is named twice
  kMissingTwice,       // subject: a column whose missing values are listed twice
  kContinuousTarget,   // subject: the target
  kCategoricalWeight,  // subject: the weight

  // Values. Subject: the column; detail: the text that was found, or its beginning.
  kTextAmongNumbers,        // a text in a column of numbers
  kTextInNamedColumn,       // the same, in a column that was asked for
  kTextInContinuousColumn,  // the same, in a column that was said to be continuous
  kInfiniteNumber,          // infinite, or beyond the largest double
  kTooManyCategories,       // the first one too many, or too long
  kBadWeight,               // negative, infinite or no number

  // A run.
  kNoRecords,       // none is there, or none has a usable weight
  kCancelled,       // the host asked it to stop
  kTemporaryFile,   // one could not be written or read back
  kTooManyThreads,  // the system does not start them

  // Files. The detail is why, in the system's words; the place is the file.
  kUnreadable,      // one cannot be opened or read
  kNotWritten,      // one cannot be written; without a place it is standard output
  kTemporaryFiles,  // they cannot be written; subject: their directory
  kNotAFile,        // a directory where a file is meant; no detail
  kWrongFile,       // not what is read there, or far too large for it; detail: what it should be

  // Bin files.
  kBadBinFile,      // no bin file, or one that contradicts itself; the place says where
  kUnknownVersion,  // a bin file of another version of the format; detail: its version
  kUnwritable,      // a number or text that a bin file cannot hold; the place says where

  // Which results of a model are meant.
  kSeveralTargets,  // bins for several targets and none chosen; detail: their names, quoted
  kUnknownTarget,   // subject: the target that was asked for; detail: those there are, quoted
  kNoTargets,       // subject: the target that was asked for, of bins without targets
  kNoResults,       // there are no results
  kNoBins,          // every result ended in an error; detail: the first one's, in words

  // Weight of evidence.
  kEvidenceNeedsTarget,      // bins without target
  kEvidenceNeedsTwoClasses,  // subject: the target

  // Missing values that do not fit the kind of their column.
  kMissingNotNumeric,  // subject: a numeric column; detail: the value that is no number
  kMissingInterval,    // subject: a column of texts, for which an interval is given

  // Exports.
  kMissingNotWhole,   // subject: the text for missing values, among indexes
  kMissingNotNumber,  // subject: the text for missing values, among weights of evidence
  kColumnExists,      // subject: the name of a new column; detail: that of its attribute
  kTableName,         // subject: a text that is no name of a table
  kNoInfinity,        // subject: a dialect of SQL that cannot say an infinite weight of evidence

  // Classes of targets.
  kUnknownClass,  // subject: a class that no target has; detail: those there are, in words
  kTwoEvents,     // subject: the target that two events are named for

  // Refining bins.
  kUnknownAttribute,       // subject: an attribute of which there are no bins
  kNoSuchCutPoint,         // subject: an attribute; detail: the number that is no cut point of it
  kRefineNeedsTwoClasses,  // subject: the target; empty: bins without target
  kTooManyBins,            // subject: the attribute
  kNoSuchBins,             // subject: an attribute; detail: what its bins cannot have together
};

// Input was refused, or a run failed. The one exception of this library, but for std::bad_alloc.
class MCBINMODEL_API Refusal : public std::runtime_error {
 public:
  // Where it is and what it is about; empty where that says nothing.
  struct About {
    std::string place;    // such as "data.csv:12", or "bins.json: /results/0"
    std::string subject;  // a name, such as that of a column
    std::string detail;   // a text that was found there
  };

  // The reason alone, with RefusalCode::kInput; or all of it.
  explicit Refusal(const std::string& reason);
  Refusal(RefusalCode code, About about, const std::string& reason);

  // Copies share the words of what().
  Refusal(const Refusal& other);
  Refusal& operator=(const Refusal& other);
  ~Refusal() override;

  // Which rule was broken, where, by what.
  RefusalCode GetCode() const { return fCode; }
  const std::string& GetPlace() const { return fAbout.place; }
  const std::string& GetSubject() const { return fAbout.subject; }
  const std::string& GetDetail() const { return fAbout.detail; }

  // What is wrong, in words and without the place; what() has both.
  const std::string& GetReason() const { return fReason; }

 private:
  RefusalCode fCode;
  About fAbout;
  std::string fReason;
};

}  // namespace MCBinModel
