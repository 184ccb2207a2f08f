#include "containers/text_array.h"

template class TArray<TSimpleString>;
