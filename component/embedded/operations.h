// The functions behind the record of operations, one for each row of the list and of the same name.
#pragma once
#include "component/host.h"

namespace vorel::component::embedded {

#define VOREL_HOST_FUNCTION(NAME, SELECTOR, RESULT, PARAMETERS) RESULT NAME PARAMETERS;
VOREL_HOST_SERVICES(VOREL_HOST_FUNCTION)
VOREL_HOST_QUESTIONS(VOREL_HOST_FUNCTION)
#undef VOREL_HOST_FUNCTION

}  // namespace vorel::component::embedded
