#include "host/capi/native_call.h"

#include <bit>
#include <utility>

namespace zavhost {
namespace {

template <std::size_t>
using Word = std::uint64_t;

}  // namespace

#ifdef _WIN32

// Windows: the position of an argument determines its register. The first four are in rcx, rdx, r8,
// r9 or in xmm0 to xmm3, all others on the stack. A call with a variable argument list puts a
// double into both registers of its position, so the callee finds integers and doubles. Only the
// first argument needs its own type, since a variable argument list cannot start with it.

void MachineArguments::AddInteger(std::uint64_t word) { stack_.at(words_++) = word; }

void MachineArguments::AddDouble(double number) {
  if (words_ == 0) doubles_ = 1;
  AddInteger(std::bit_cast<std::uint64_t>(number));
}

template <class Result>
Result MachineArguments::Call(void* function) const {
  const auto call = [&]<class First, std::size_t... I>(First first, std::index_sequence<I...>) {
    const auto target = reinterpret_cast<Result (*)(First, ...)>(function);
    return target(first, std::bit_cast<double>(stack_[1]), std::bit_cast<double>(stack_[2]),
                  std::bit_cast<double>(stack_[3]), stack_[I + 4]...);
  };
  constexpr std::make_index_sequence<kLimit - 4> kRest;
  return doubles_ > 0 ? call(std::bit_cast<double>(stack_[0]), kRest) : call(stack_[0], kRest);
}

#else

// System V: integers and doubles fill their registers independently; the rest is on the stack in
// order.

void MachineArguments::AddInteger(std::uint64_t word) {
  if (integers_ < kIntegerRegisters) {
    integer_registers_[integers_++] = word;
    return;
  }
  stack_.at(words_++) = word;
}

void MachineArguments::AddDouble(double number) {
  if (doubles_ < kDoubleRegisters) {
    double_registers_[doubles_++] = number;
    return;
  }
  stack_.at(words_++) = std::bit_cast<std::uint64_t>(number);
}

template <class Result>
Result MachineArguments::Call(void* function) const {
  const auto call = [&]<std::size_t... I, std::size_t... D, std::size_t... S>(
      std::index_sequence<I...>, std::index_sequence<D...>, std::index_sequence<S...>) {
    const auto target = reinterpret_cast<Result (*)(
        Word<I>..., decltype(static_cast<void>(D), 0.0)..., Word<S>...)>(function);
    return target(integer_registers_[I]..., double_registers_[D]..., stack_[S]...);
  };
  return call(std::make_index_sequence<kIntegerRegisters>(),
              std::make_index_sequence<kDoubleRegisters>(), std::make_index_sequence<kLimit>());
}

#endif

std::uint64_t MachineArguments::CallForInteger(void* function) const {
  return Call<std::uint64_t>(function);
}

double MachineArguments::CallForDouble(void* function) const { return Call<double>(function); }

}  // namespace zavhost
