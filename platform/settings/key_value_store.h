// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>

namespace ledgewise {

// The user's persistent key-value settings, one value per key. The preferences record
// and the global shortcuts both live here.
class KeyValueStore
{
public:
    virtual ~KeyValueStore() = default;

    // An invalid QVariant when the key is absent.
    virtual QVariant value(const QString &key) const = 0;
    virtual bool contains(const QString &key) const = 0;
    virtual void setValue(const QString &key, const QVariant &value) = 0;
    virtual void remove(const QString &key) = 0;
    // Pushes pending writes to disk; the store also does this by itself.
    virtual void sync() = 0;

    // The file the values live in; empty for a store that keeps them elsewhere.
    virtual QString fileName() const { return {}; }
    // Why the last write did not reach the disk (a short phrase); empty when it did.
    virtual QString writeFailure() const { return {}; }
};

} // namespace ledgewise
