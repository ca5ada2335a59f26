// The components that the resource fork declares, each with the entry that its 'dlle' resource names.
#pragma once
#include "component/embedded/embedded_host.h"

namespace vorel::component::embedded {

struct RegisteredComponent {
  ComponentListing listing;
  ComponentEntry entry;  // null if no entry of this name was given
};

/// Reads every 'thng' of the resources. Throws Problem for one that cannot be understood; what was registered
/// before stays then.
void RegisterComponents(std::span<const NamedEntry> entries);
void ForgetComponents();

/// Null for a number that is no component. The record stays until components are forgotten.
const RegisteredComponent* FindComponent(u32 number);

/// The first component of a type and subtype, in the order of the fork; null if there is none.
const RegisteredComponent* FirstComponent(OSType type, OSType subtype);

}  // namespace vorel::component::embedded
