#include "platform/xdg/url_opener.h"

#include <QDesktopServices>

namespace ledgewise {

bool DesktopUrlOpener::open(const QUrl &url)
{
    return url.isValid() && QDesktopServices::openUrl(url);
}

} // namespace ledgewise
