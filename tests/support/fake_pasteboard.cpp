// Gives the fake's signals a home (the header is header-only otherwise).
#include "tests/support/fake_pasteboard.h"
