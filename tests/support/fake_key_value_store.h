// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/settings/key_value_store.h"

#include <QMap>

namespace ledgewise {

// An in-memory settings store that counts writes, for tests that need to know how
// often something was stored.
class FakeKeyValueStore final : public KeyValueStore
{
public:
    QVariant value(const QString &key) const override { return m_values.value(key); }
    bool contains(const QString &key) const override { return m_values.contains(key); }
    void setValue(const QString &key, const QVariant &value) override
    {
        ++writes;
        m_values.insert(key, value);
    }
    void remove(const QString &key) override
    {
        ++removals;
        m_values.remove(key);
    }
    void sync() override { }

    int writes = 0;
    int removals = 0;

private:
    QMap<QString, QVariant> m_values;
};

} // namespace ledgewise
