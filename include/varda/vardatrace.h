// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qobject.h>
#include <QtCore/qstring.h>

#include <memory>

#include <varda/vardaexport.h>

class QIODevice;
class VardaSession;

/**
 * Writes down what happens on a link, as JSON lines that docs/traces.md describes.
 *
 * A VardaComputer has setTrace() for that. This class is for sessions.
 */
class VARDA_EXPORT VardaTrace : public QObject
{
    Q_OBJECT

public:
    /** What is written. */
    enum Content : int {
        Redacted, ///< what is private is replaced by something else of the same length
        Complete, ///< everything
    };
    Q_ENUM(Content)

    /**
     * Writes down what happens in @p session from now on. If there is a trace of this session
     * already, it ends.
     *
     * The trace ends if it or the session is deleted, or if the device does not take what is
     * written. It then does not write again.
     *
     * @param device  open for writing; not owned, may be deleted first
     * @return the trace, which belongs to the session
     */
    static VardaTrace *attach(VardaSession &session, QIODevice *device, Content content = Redacted);
    ~VardaTrace() override;

Q_SIGNALS:
    /** The device has not taken what was written, so the trace has ended. */
    void failed(const QString &text);

private:
    explicit VardaTrace(VardaSession &session, QIODevice *device, Content content);

    class Private;
    std::unique_ptr<Private> d;
};
