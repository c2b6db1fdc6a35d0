#include "platform/standing_threads.h"

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/thread_exceptions.h"

namespace zavrel {
namespace {

class StandingThreads {
 public:
  ~StandingThreads() {
    {
      const std::lock_guard lock(mutex_);
      closing_ = true;
    }
    wake_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }

  void Call(std::size_t others, void (*work)(void*), void* context) noexcept {
    StartUpTo(others);
    {
      const std::lock_guard lock(mutex_);
      work_ = work;
      context_ = context;
      waiting_ = others;
    }
    wake_.notify_all();
    work(context);
    std::unique_lock lock(mutex_);
    waiting_ = 0;
    idle_.wait(lock, [this] { return running_ == 0; });
  }

 private:
  // If fewer threads than requested exist, these do the work.
  void StartUpTo(std::size_t count) noexcept try {
    while (threads_.size() < count) threads_.emplace_back([this] { Serve(); });
  } catch (const std::exception&) {
  }

  void Serve() {
    std::unique_lock lock(mutex_);
    for (;;) {
      wake_.wait(lock, [this] { return waiting_ > 0 || closing_; });
      if (closing_) return;
      --waiting_;
      ++running_;
      lock.unlock();
      if (SetUpThreadExceptions()) work_(context_);
      lock.lock();
      if (--running_ == 0) idle_.notify_one();
    }
  }

  std::mutex mutex_;
  std::condition_variable wake_;
  std::condition_variable idle_;
  void (*work_)(void* context) = nullptr;
  void* context_ = nullptr;
  std::size_t waiting_ = 0;  // calls that no thread has begun
  std::size_t running_ = 0;
  bool closing_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace

void CallOnStandingThreads(std::size_t others, void (*work)(void* context),
                           void* context) noexcept {
  static StandingThreads threads;
  threads.Call(others, work, context);
}

}  // namespace zavrel
