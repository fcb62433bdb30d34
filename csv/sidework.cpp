#include "csv/sidework.h"

#include <system_error>
#include <utility>

namespace MCBin {

SideWork::SideWork(std::size_t otherThreads, std::size_t mostPieces,
                   std::function<void(std::size_t)> work)
    : fWork(std::move(work)), fMostThreads(otherThreads), fPieces(mostPieces) {
  fThreads.reserve(otherThreads);
}

SideWork::~SideWork() {
  {
    const std::lock_guard lock(fMutex);
    fStops = true;
  }
  fHasChanged.notify_all();
}

void SideWork::HandIn() {
  bool isOneForOthers = false;
  {
    const std::lock_guard lock(fMutex);
    ++fHandedIn;
    isOneForOthers = fHandedIn - fBegun > 1;
  }
  if (isOneForOthers && fThreads.size() < fMostThreads) StartThread();
  fHasChanged.notify_one();
}

void SideWork::StartThread() {
  try {
    fThreads.emplace_back([this] { WorkOn(); });
  } catch (const std::system_error&) {
    fMostThreads = fThreads.size();
  }
}

void SideWork::WorkOn() {
  std::unique_lock lock(fMutex);
  for (;;) {
    fHasChanged.wait(lock, [this] { return fStops || HasNext(); });
    if (fStops) return;
    DoNext(lock);
  }
}

// Unlocks while it works.
void SideWork::DoNext(std::unique_lock<std::mutex>& lock) {
  const std::size_t piece = fBegun++;
  lock.unlock();
  std::exception_ptr failure;
  try {
    fWork(piece);
  } catch (...) {
    failure = std::current_exception();
  }
  lock.lock();
  At(piece) = {true, std::move(failure)};
  fHasChanged.notify_all();
}

void SideWork::WaitFor(std::size_t piece) {
  std::unique_lock lock(fMutex);
  while (!At(piece).isDone) {
    if (HasNext()) {
      DoNext(lock);
    } else {
      fHasChanged.wait(lock, [&] { return HasNext() || At(piece).isDone; });
    }
  }
  const std::exception_ptr failure = std::exchange(At(piece), {}).failure;
  if (failure) std::rethrow_exception(failure);
}

}  // namespace MCBin
