#include "metadata/binweightvar.h"

#include <gtest/gtest.h>

#include <memory>

#include "common/missing.h"
#include "metadata/binnumericusermissing.h"
#include "metadata/binroundencoder.h"

namespace {

double Encode(const IBINVariable& variable, double weight) {
  return dynamic_cast<const BINRoundEncoder&>(*variable.GetEncoder()).Encode(weight);
}

std::unique_ptr<BINWeightVar> WeightVar(IBINVariable::BINWRoundingOption option, double missing) {
  auto variable = std::make_unique<BINWeightVar>("w", "weight", option);
  auto userMissing = std::make_unique<BINNumericUserMissing>();
  userMissing->AddValue(missing, "");
  variable->SetUserMissingInfo(userMissing.release());
  return variable;
}

TEST(BINWeightVar, CloneHasTheOptionAndItsOwnMissingValues) {
  auto source = WeightVar(IBINVariable::RoundTruncate, 7);
  const std::unique_ptr<IBINVariable> clone(source->Clone());
  EXPECT_EQ(clone->GetEncoder()->GetUserMissingInfo(), clone->GetUserMissingInfo());
  source.reset();
  EXPECT_EQ(Encode(*clone, 2.9), 2.0);
  EXPECT_EQ(Encode(*clone, 7), MCMV::Missing());
}

TEST(BINWeightVar, AssignmentKeepsTheOptionAndTakesTheMissingValues) {
  auto source = WeightVar(IBINVariable::RoundTruncate, 7);
  const auto owner = WeightVar(IBINVariable::RoundClosest, 9);
  BINWeightVar& assigned = *owner;
  assigned = *source;
  source.reset();
  EXPECT_EQ(Encode(assigned, 2.9), 3.0);
  EXPECT_EQ(Encode(assigned, 7), MCMV::Missing());
  EXPECT_EQ(Encode(assigned, 9), 9.0);
}

}  // namespace
