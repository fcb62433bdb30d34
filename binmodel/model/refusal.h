#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace MCBinModel {

// Why something was refused. A front end that knows more than the reason says, such as the name
// of an option that helps, words these in its own way.
enum class RefusalCode {
  kInput,  // what was read makes no sense, or cannot be read; the reason says all
};

// Input was refused, or a run failed.
class Refusal : public std::runtime_error {
 public:
  // Where it is and what it is about; empty where that says nothing.
  struct About {
    std::string place;    // such as "data.csv:12", or "bins.json: /results/0"
    std::string subject;  // a name, such as that of a column
    std::string detail;   // a text that was found there
  };

  explicit Refusal(const std::string& reason) : Refusal(RefusalCode::kInput, {}, reason) {}
  Refusal(RefusalCode code, About about, const std::string& reason)
      : std::runtime_error(about.place.empty() ? reason : about.place + ": " + reason),
        fCode(code),
        fAbout(std::move(about)),
        fReason(reason) {}

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
