#include "component/selector_dispatch.h"

#include "component/host_errors.h"

namespace vorel::component {

const SelectorRow* FindRow(const SelectorTables& tables, i16 selector) {
  if (selector < 0) {
    const i32 index = selector + static_cast<i32>(tables.negative.size());
    return index < 0 ? nullptr : &tables.negative[static_cast<std::size_t>(index)];
  }
  const std::size_t range = static_cast<std::size_t>(selector) >> 8;
  if (range >= tables.ranges.size()) return nullptr;
  const std::size_t index = static_cast<std::size_t>(selector) & 0xFF;
  return index < tables.ranges[range].size() ? &tables.ranges[range][index] : nullptr;
}

ComponentResult ServeSelector(const SelectorTables& tables, ComponentParameters* parameters, Handle storage,
                              ComponentInstance delegate) {
  const SelectorRow* const row = FindRow(tables, parameters->what);
  switch (row == nullptr ? RowKind::delegated : row->kind) {
    case RowKind::unsupported:
      return badComponentSelector;
    case RowKind::nothing:
      return noErr;
    case RowKind::function:
      if (row->parameters == 0) return badComponentSelector;
      return Host->CallWithStorage(storage, parameters, row->function);
    case RowKind::delegated:
      break;
  }
  return delegate == nullptr ? badComponentSelector : Host->DelegateComponentCall(parameters, delegate);
}

bool HasOwnRow(const SelectorTables& tables, i16 selector) {
  const SelectorRow* const row = FindRow(tables, selector);
  return row != nullptr && (row->kind == RowKind::function || row->kind == RowKind::nothing);
}

}  // namespace vorel::component
