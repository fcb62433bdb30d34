#include "binmodel/model/refusal.h"

#include <utility>

namespace MCBinModel {

Refusal::Refusal(const std::string& reason) : Refusal(RefusalCode::kInput, {}, reason) {}

Refusal::Refusal(RefusalCode code, About about, const std::string& reason)
    : std::runtime_error(about.place.empty() ? reason : about.place + ": " + reason),
      fCode(code),
      fAbout(std::move(about)),
      fReason(reason) {}

Refusal::Refusal(const Refusal& other) = default;
Refusal& Refusal::operator=(const Refusal& other) = default;
Refusal::~Refusal() = default;

}  // namespace MCBinModel
