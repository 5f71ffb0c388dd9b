// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

/// Edges of controls that can be seen on dark windows. The style Fusion draws them in the window's
/// colour, darker, which on black leaves a box that isn't ticked without any; so in that style the
/// controls, and nothing else, get a lighter one to make their edges of. Light windows, other
/// styles and the program's own palette are left alone. It follows the palette as long as it lives.
/// Thread: main.
class COutlines : public QObject {
    Q_OBJECT

public:
    COutlines();
    ~COutlines() override;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void apply();
    void forget();

    bool m_bApplying = false; // The palettes of classes are told as the program's own is.
};
