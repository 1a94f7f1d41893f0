#include "modules/placeholder_modules.h"

namespace ledgewise {

QUrl PlaceholderModule::expandedView() const
{
    return qmlComponent(QStringLiteral("Ledgewise/Modules"), QStringLiteral("ComingSoonView.qml"));
}

QVariantMap PlaceholderModule::expandedViewProperties() const
{
    return {{QStringLiteral("title"), title()}};
}

} // namespace ledgewise
