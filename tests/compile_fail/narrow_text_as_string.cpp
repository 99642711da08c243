#include "nk/nk_string.h"

NK::CString Use() {
#ifdef KIVORA_MISTAKE
    NK::CString text = "Latin-1 or UTF-8?";
#else
    NK::CString text = L"wide";
#endif
    return text;
}
