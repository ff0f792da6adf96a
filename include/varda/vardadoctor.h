// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/qlist.h>

#include <memory>

#include <varda/vardacheck.h>
#include <varda/vardajob.h>

class VardaComputer;
class VardaDoctorPrivate;

/**
 * Looks at everything between this program and a computer, and reports what is wrong and the one
 * remedy. value() is a QList<VardaCheck>.
 *
 * It ends with NoError whatever it finds; fault() is the first fault. It changes nothing, neither in
 * the computer nor in the system, and starts no service. What lies behind a fault is skipped.
 * Finding and connecting may take setConnectLimit(), by default 90 s.
 */
class VARDA_EXPORT VardaDoctor final : public VardaJob
{
    Q_OBJECT
    Q_PROPERTY(QList<VardaCheck> checks READ checks NOTIFY checked)
    Q_PROPERTY(VardaCheck fault READ fault NOTIFY checked)

public:
    /**
     * Begins. The device and the kind of link are those that are set for @p computer; with no device
     * it takes the first computer in reach. A link that it has made for this it drops afterwards.
     * The job deletes itself after its end, as all jobs do; the computer may be deleted before it.
     */
    [[nodiscard]] static VardaDoctor *examine(VardaComputer &computer);
    ~VardaDoctor() override;

    /** What is known so far, in the order of VardaCheck::Subject; each subject once at the end. */
    [[nodiscard]] QList<VardaCheck> checks() const;
    /** The first fault. Without one its state is not Fault. */
    [[nodiscard]] VardaCheck fault() const;

Q_SIGNALS:
    void checked(const VardaCheck &check);

protected:
    void stop(bool atOnce) override;

private:
    friend class VardaDoctorPrivate;
    explicit VardaDoctor(VardaComputer &computer);

    std::unique_ptr<VardaDoctorPrivate> d;
};
