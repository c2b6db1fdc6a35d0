#pragma once
// The interface of a generator whose address is passed to the random-value function of another
// library.

#include <cstddef>
#include <cstdint>

namespace zavrel {

/// A generator of random numbers.
///
/// The order of the virtual functions is a contract. A separately compiled library, perhaps from
/// another compiler, gets the address of a generator and calls its functions by their position in
/// the table. The positions are those of a class whose destructor comes first, in the layout of
/// Windows compilers: a virtual destructor takes one position and receives flags. GCC's own
/// destructor would take two positions and move all others; therefore Destroy replaces it.
///
/// No function throws, since the other compiler may not know these exceptions.
class RndGen {
 public:
  RndGen(const RndGen&) = delete;
  RndGen& operator=(const RndGen&) = delete;

  /// 0: if bit 0 of the flags is set, deletes the generator, which must come from new; otherwise
  /// does nothing, since a generator holds only its own memory. Returns its address.
  virtual void* Destroy(std::uint32_t flags) noexcept = 0;
  /// 1: seeds from a sequence of words; an empty sequence counts as one word 0.
  virtual void SeedSequence(const std::uint32_t* words, std::size_t count) noexcept = 0;
  /// 2: seeds from one value.
  virtual void Seed(std::uint32_t value) noexcept = 0;
  /// 3: the next value of 32 bits.
  virtual std::uint32_t Next() noexcept = 0;
  /// 4: the next double in [0, 1). By default the low 27 bits of a second value, followed by the
  /// low 26 bits of a first value, times 2^-53.
  virtual double NextDouble() noexcept;
  /// 5: the generator's name.
  virtual const char* Name() const noexcept = 0;
  /// 6: a further query; 0 if there is no answer.
  virtual std::int32_t FurtherQuery() const noexcept;

 protected:
  RndGen() = default;
  ~RndGen() = default;
};

}  // namespace zavrel
