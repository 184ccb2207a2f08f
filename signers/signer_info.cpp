#include "signers/signer_info.h"

template class TArray<signerInfo>;
