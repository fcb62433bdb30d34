#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace MCBin {

// Does pieces of work side by side, for one thread that hands them in and wants them back in order.
// That thread does pieces itself while it waits; without others it does all of them.
class SideWork {
 public:
  // `work` is called with the number of a piece. The other threads begin when there is work for
  // them; where the system has no more of them, there are fewer. At most `mostPieces` are waited
  // for at a time.
  SideWork(std::size_t otherThreads, std::size_t mostPieces, std::function<void(std::size_t)> work);

  // Waits for the pieces that have been begun; the others are not done.
  ~SideWork();
  SideWork(const SideWork&) = delete;
  SideWork& operator=(const SideWork&) = delete;

  // Hands in the next piece; the first one is 0.
  void HandIn();

  // Returns when the piece is done. Throws what `work` threw. Once for each piece.
  void WaitFor(std::size_t piece);

 private:
  struct Piece {
    bool isDone = false;
    std::exception_ptr failure;
  };

  void StartThread();
  void WorkOn();
  void DoNext(std::unique_lock<std::mutex>& lock);
  bool HasNext() const { return fBegun < fHandedIn; }
  Piece& At(std::size_t piece) { return fPieces[piece % fPieces.size()]; }

  const std::function<void(std::size_t)> fWork;
  std::size_t fMostThreads;

  std::mutex fMutex;  // of what follows
  std::condition_variable fHasChanged;
  std::size_t fHandedIn = 0;
  std::size_t fBegun = 0;
  std::vector<Piece> fPieces;  // used in turn
  bool fStops = false;

  std::vector<std::jthread> fThreads;
};

}  // namespace MCBin
