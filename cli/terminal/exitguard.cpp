#include "cli/terminal/exitguard.h"

#include <exception>
#include <new>
#include <string>

#include "binmodel/model/refusal.h"
#include "cli/terminal/notes.h"
#include "cli/terminal/refusaltext.h"
#include "cli/terminal/usageerror.h"
#include "io/interrupt.h"

namespace MCBin {

namespace {

int Cancelled() {
  PrintNote("cancelled");
  return kExitCancelled;
}

int Fail(const std::string& message, int exitCode) {
  PrintNote("error: " + message);
  return exitCode;
}

}  // namespace

int RunGuarded(const CommandAction& action) {
  try {
    return action();
  } catch (const Interrupt::Requested&) {
    return Cancelled();
  } catch (const UsageError& error) {
    return Fail(error.what(), kExitUsage);
  } catch (const MCBinModel::Refusal& error) {
    if (error.GetCode() == MCBinModel::RefusalCode::kCancelled) return Cancelled();
    return Fail(RefusalText(error), IsUsageRefusal(error.GetCode()) ? kExitUsage : kExitFailed);
  } catch (const std::bad_alloc&) {
    return Fail("not enough memory", kExitFailed);
  } catch (const std::exception& error) {
    return Fail(error.what(), kExitFailed);
  }
}

}  // namespace MCBin
