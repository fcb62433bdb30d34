#pragma once

#include <string>
#include <vector>

// What a run can tell about itself beyond its status.
namespace MCBinning {

// How far a run has come.
enum class RunPhase {
  kNotStarted,  // or refused before a record was read
  kReading,     // the records of the host
  kBinning,     // attribute by attribute
  kFinished     // with a status that is not an error
};

// A category code that its variable cannot have: outside 0 to 255, or not below the number of
// categories that the variable declares.
struct RefusedCode {
  int variable;          // its index in the variable list
  double code;           // as the record has it
  unsigned long record;  // the first that showed such a code; the first record is number 1
};

// What happened in the last run of an algorithm object. Counts are of the data pass, which a later
// run does not repeat. Hosts read it and make none; new fields come last.
struct RunReport {
  // How far it came.
  RunPhase phase = RunPhase::kNotStarted;

  // Attributes (or pairs) that the run has to bin, and how many of them are done. Refused entries
  // of an index list are not counted.
  unsigned long attributeCount = 0;
  unsigned long attributesDone = 0;

  // Records asked for, null ones included; each is stored, null or dropped for its weight.
  unsigned long recordsRead = 0;
  unsigned long recordsStored = 0;
  unsigned long nullRecords = 0;
  unsigned long missingWeights = 0;        // dropped: missing or user-missing
  unsigned long weightsRoundedToZero = 0;  // dropped: zero or less once rounded
  unsigned long nanWeights = 0;            // stored: they make sums NaN

  // The first refused code of every variable that showed one, in order of the records.
  std::vector<RefusedCode> refusedCodes;

  // The first record with fewer values than the list has variables; 0 for none. It ends the run
  // with error 120003.
  unsigned long shortRecord = 0;

  // The first temporary file that could not be written or read back, and the system's error
  // (errno), 0 when the file was changed by someone. Behind 120021, and 120015 where no file could
  // be made.
  std::string tempFile;
  int systemError = 0;

  // What stands behind status 1: the host's cancel query or Cancel(), or an exception of a host's
  // object with the text of its what(), empty for one that is no std::exception.
  bool isCancelled = false;
  bool isHostException = false;
  std::string exceptionText;
};

}  // namespace MCBinning
