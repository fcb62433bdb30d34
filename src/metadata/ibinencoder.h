#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "../common/export.h"

class IBINUserMissing;

// Turns the raw values of one variable into the numbers that binning works on.
//
// Category encoders (BINCatNumEncoder, BINStringEncoder) give every distinct value a code
// 0, 1, 2, ... in order of first appearance; BINRoundEncoder makes weights whole numbers.
// Every encoder applies the user-missing definition of its variable. Encode, EncodeConst
// and Decode belong to the concrete classes, whose argument types differ. Whatever makes, copies
// or adds to an encoder, sets labels or returns a text may throw std::bad_alloc; the codes are then
// as they were.
class MCBINNING_API IBINEncoder {
 public:
  // The base class holds nothing, so copying it copies nothing.
  IBINEncoder() = default;
  IBINEncoder(const IBINEncoder&) = default;
  IBINEncoder& operator=(const IBINEncoder&) = default;

  virtual ~IBINEncoder();

  // The IBINVariable::MeasureLevel of the data it serves: 2, 3 or 4.
  virtual int GetEncoderType() const = 0;

  // The number of codes given so far; 0 for a round encoder.
  virtual int GetNumberOfCategories() const = 0;

  // Replaces all labels; label i belongs to code i. Any number of labels is taken.
  virtual void SetValueLabels(const std::vector<std::string>& labels) = 0;

  // Sets the label of one code, first adding empty labels up to the number of categories.
  // A code that was not given yet is ignored.
  virtual void SetValueLabel(int code, const std::string& label) = 0;

  // The encoder's own list, valid as long as the encoder; null when it keeps no labels.
  virtual const std::vector<std::string>* GetValueLabels() const = 0;

  // Takes a definition of the encoder's data type, or null for none, in place of the one
  // held. False for the other data type: nothing changes and the caller keeps the object.
  // A category encoder owns what it took; a round encoder never does.
  virtual bool SetUserMissingInfo(IBINUserMissing* userMissing) = 0;

  // The definition held; null when there is none.
  virtual IBINUserMissing* GetUserMissingInfo() const = 0;

  // A copy; the caller deletes it.
  virtual IBINEncoder* Clone() const = 0;

  // Writes a readable dump, in the stream's own formatting.
  virtual std::ostream& Display(std::ostream& os) const = 0;
};
