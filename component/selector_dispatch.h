// From a selector to the function that serves it, by the tables of a component.
#pragma once
#include <array>
#include <cstdarg>
#include <cstring>
#include <span>
#include <type_traits>
#include <utility>

#include "component/host.h"
#include "component/selectors.h"

namespace vorel::component {

enum class RowKind : u8 {
  delegated,    // passed on to the delegate; not supported where there is none
  unsupported,  // refused
  nothing,      // accepted, and nothing is done
  function
};

struct SelectorRow {
  RowKind kind = RowKind::delegated;
  SelectorFunction function = nullptr;
  u32 parameters = 0;  // the host's word for a function's parameters; 0 marks a row that can't be called
};

inline constexpr SelectorRow kUnsupported = {RowKind::unsupported, nullptr, 0};
inline constexpr SelectorRow kNothing = {RowKind::nothing, nullptr, 0};

struct SelectorTables {
  std::span<const SelectorRow> negative;               // the last row is selector -1
  std::array<std::span<const SelectorRow>, 3> ranges;  // selectors from 0x0000, 0x0100 and 0x0200 on
};

template <typename Argument>
Argument FromSlot(Slot slot) {
  if constexpr (std::is_pointer_v<Argument>) {
    return reinterpret_cast<Argument>(slot);
  } else {
    return static_cast<Argument>(slot);
  }
}

// Makes a function of a component callable through slots: storage as a pointer to the component's own record,
// null before there is one, and every slot as the type of its parameter.
template <auto Function>
struct SelectorThunk;

template <typename Storage, typename... Arguments, ComponentResult (*Function)(Storage*, Arguments...)>
struct SelectorThunk<Function> {
  static_assert(sizeof...(Arguments) <= kMostSlots);

  template <std::size_t... Indices>
  static ComponentResult Spread(Handle storage, const std::array<Slot, kMostSlots>& slots,
                                std::index_sequence<Indices...>) {
    return Function(reinterpret_cast<Storage*>(storage), FromSlot<Arguments>(slots[Indices])...);
  }

#if VOREL_HOST_PACKING == 2
  static ComponentResult Call(Handle storage, ...) {
    std::array<Slot, kMostSlots> slots = {};
    va_list given;
    va_start(given, storage);
    for (std::size_t i = 0; i < sizeof...(Arguments); ++i) slots[i] = va_arg(given, Slot);
    va_end(given);
    return Spread(storage, slots, std::index_sequence_for<Arguments...>{});
  }
#else
  static ComponentResult Call(Handle storage, Slot s0, Slot s1, Slot s2, Slot s3, Slot s4, Slot s5, Slot s6,
                              Slot s7, Slot s8, Slot s9) {
    return Spread(storage, {s0, s1, s2, s3, s4, s5, s6, s7, s8, s9}, std::index_sequence_for<Arguments...>{});
  }
#endif

  // Four bits of convention, two of result size, then two for each argument, storage first: 1, 2 or 3 for one,
  // two or four bytes. A pointer counts as four.
  static constexpr u32 Parameters() {
    u32 word = 0x30 | 3u << 6;
    u32 shift = 8;
    [[maybe_unused]] const auto add = [&](std::size_t size) {
      word |= (size == 1 ? 1u : size == 2 ? 2u : 3u) << shift;
      shift += 2;
    };
    (add(sizeof(std::conditional_t<std::is_pointer_v<Arguments>, u32, Arguments>)), ...);
    return word;
  }
};

template <auto Function>
constexpr SelectorRow CallRow() {
  return {RowKind::function, SelectorThunk<Function>::Call, SelectorThunk<Function>::Parameters()};
}

// The row of a selector, or null where no table has one.
const SelectorRow* FindRow(const SelectorTables& tables, i16 selector);

// Serves a call. `delegate` is null for components without one.
ComponentResult ServeSelector(const SelectorTables& tables, ComponentParameters* parameters, Handle storage,
                              ComponentInstance delegate);

// Whether a table leads a selector to a function, or accepts it. What is left to a delegate is not asked for.
bool HasOwnRow(const SelectorTables& tables, i16 selector);

// A call of another component with these arguments.
template <typename... Arguments>
ComponentResult CallSelector(ComponentInstance instance, i16 selector, Arguments... arguments) {
  static_assert(sizeof...(Arguments) <= kMostSlots);
  struct {
    ComponentParameters parameters;
    Slot more[kMostSlots - 1];
  } block = {};
  block.parameters.paramSize = static_cast<u8>(sizeof...(Arguments) * sizeof(Slot));
  block.parameters.what = selector;
  const auto toSlot = [](auto argument) {
    if constexpr (std::is_pointer_v<decltype(argument)>) {
      return reinterpret_cast<Slot>(argument);
    } else {
      return static_cast<Slot>(argument);
    }
  };
  const std::array<Slot, sizeof...(Arguments) + 1> slots = {toSlot(arguments)..., 0};
  std::memcpy(block.parameters.params, slots.data(), sizeof...(Arguments) * sizeof(Slot));
  return Host->CallComponent(instance, &block.parameters);
}

}  // namespace vorel::component
