// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/clipboard/image_encoder.h"

#include "modules/clipboard/clipboard_rules.h"

#include <QDir>
#include <QSaveFile>
#include <QUuid>

#include <mutex>
#include <utility>

namespace ledgewise {

struct ImageEncoder::Results {
    std::mutex mutex;
    QList<Finished> finished;
};

namespace {

// The PNG written atomically and owner-only, under a fresh upper-case UUID name; empty
// when the picture does not decode, is too large or cannot be written.
QString writePng(const QString &folder, const QByteArray &bytes)
{
    const auto png = ClipboardRules::pngData(bytes);
    if (!png)
        return {};
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper() + QStringLiteral(".png");
    QSaveFile file(QDir(folder).filePath(name));
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    if (file.write(*png) != png->size() || !file.commit())
        return {};
    return name;
}

} // namespace

ImageEncoder::ImageEncoder(QString folder, QObject *parent)
    : QObject(parent)
    , m_folder(std::move(folder))
    , m_results(std::make_shared<Results>())
{
    // One thread: pictures finish in the order they were copied, and at most one big
    // picture is decoded at a time.
    m_thread.setMaxThreadCount(1);
}

ImageEncoder::~ImageEncoder()
{
    stop();
}

void ImageEncoder::encode(QByteArray bytes, double capturedAt, QUuid newestThen)
{
    // The task reports back through a queued call on this object, which the destructor
    // outlives by waiting for the task.
    m_thread.start(
        [results = m_results, folder = m_folder, bytes = std::move(bytes), capturedAt, newestThen, self = this] {
            const QString name = writePng(folder, bytes);
            if (name.isEmpty())
                return;
            {
                std::lock_guard lock(results->mutex);
                results->finished.append({ name, capturedAt, newestThen });
            }
            QMetaObject::invokeMethod(self, &ImageEncoder::finished, Qt::QueuedConnection);
        });
}

QList<ImageEncoder::Finished> ImageEncoder::takeFinished()
{
    std::lock_guard lock(m_results->mutex);
    return std::exchange(m_results->finished, {});
}

void ImageEncoder::stop()
{
    // Tasks not started are dropped without running.
    m_thread.clear();
    m_thread.waitForDone();
}

} // namespace ledgewise
