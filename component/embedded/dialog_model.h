// Dialogs that are open, and the resources that they are made from.
#pragma once
#include <optional>
#include <vector>

#include "component/embedded/dialogs.h"

namespace vorel::component {

struct HostControl {
  HostDialog* dialog;
  std::size_t item;  // index in the dialog's items
};

struct HostDialog {
  embedded::Dialog model;
  std::vector<HostControl> controls;  // one for each item, control or not; their addresses are given out
};

}  // namespace vorel::component

namespace vorel::component::embedded {

/// Reads 'DLOG', its 'DITL', 'CNTL' and 'dlgx' resources. None if one of them is missing or damaged; without
/// 'dlgx' the dialog has no controls that can be reached.
std::optional<Dialog> ReadDialog(i16 id);

i32 DialogsInUse();
void ForgetDialogs();

}  // namespace vorel::component::embedded
