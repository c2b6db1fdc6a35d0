#pragma once
// What the random-value function of another library is handed: a generator, by its address.

#include <cstddef>
#include <cstdint>

namespace zavrel {

/// A generator of random numbers.
///
/// The order of the virtual functions is a contract: a library that was compiled separately, maybe
/// by another compiler, gets the address of a generator and calls it through its table of
/// functions, by position. The positions are those of a class whose destructor comes first, and
/// there the contract is the layout of compilers for Windows, in which a virtual destructor takes
/// one position and is passed flags. GCC's own would take two and move all that follows; hence
/// Destroy.
///
/// No function throws: the other side's compiler may know nothing of these exceptions.
class RndGen {
 public:
  RndGen(const RndGen&) = delete;
  RndGen& operator=(const RndGen&) = delete;

  /// 0: with bit 0 of the flags deletes the generator, which must come from new; without it does
  /// nothing, for a generator holds nothing but its own memory. Gives its address.
  virtual void* Destroy(std::uint32_t flags) noexcept = 0;
  /// 1: seeds from a sequence of words; an empty one counts as one word 0.
  virtual void SeedSequence(const std::uint32_t* words, std::size_t count) noexcept = 0;
  /// 2: seeds from one value.
  virtual void Seed(std::uint32_t value) noexcept = 0;
  /// 3: the next value of 32 bits.
  virtual std::uint32_t Next() noexcept = 0;
  /// 4: the next double in [0, 1). Unless a generator has a better way: the low 26 bits of a first
  /// value below the low 27 bits of a second one, times 2^-53.
  virtual double NextDouble() noexcept;
  /// 5: the generator's name.
  virtual const char* Name() const noexcept = 0;
  /// 6: a further query; 0 where there is nothing to say.
  virtual std::int32_t FurtherQuery() const noexcept;

 protected:
  RndGen() = default;
  ~RndGen() = default;
};

}  // namespace zavrel
