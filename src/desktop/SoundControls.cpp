// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/SoundControls.h"

#include "desktop/Numbers.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>

namespace {

constexpr int kClickPercent = 50;      // Fixed: the click's level at first.
constexpr int kSliderPixels = 60;      // Fixed: width of a slider.
constexpr int kLoops[] = {0, 1, 4, 8}; // Fixed: measures.

} // namespace

CSoundControls::CSoundControls(QWidget* parent) : QWidget(parent), m_pLoop(new QComboBox(this)) {
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    m_pClick = addSlider(*line, tr("Click"), kClickPercent);
    m_pMusic = addSlider(*line, tr("Music"), kWholePercent);
    m_pClick->setObjectName("clickLevel");
    m_pMusic->setObjectName("musicLevel");
    m_pLoop->setObjectName("loop");
    m_pLoop->setAccessibleName(tr("Loop"));
    m_pLoop->setToolTip(tr("Measures that are played again and again"));
    for (int const measures : kLoops) {
        m_pLoop->addItem(measures == 0 ? tr("No loop") : tr("Loop of %Ln", nullptr, measures),
                         measures);
    }
    line->addWidget(m_pLoop);
    connect(m_pLoop, &QComboBox::currentIndexChanged, this,
            [this] { emit loopChosen(m_pLoop->currentData().toInt()); });
}

QSlider* CSoundControls::addSlider(QHBoxLayout& line, QString const& name, int percent) {
    auto* slider = new QSlider(Qt::Horizontal, this);
    slider->setRange(0, kWholePercent);
    slider->setValue(percent);
    slider->setFixedWidth(kSliderPixels);
    slider->setAccessibleName(tr("Level of %1").arg(name));
    slider->setToolTip(slider->accessibleName());
    line.addWidget(new QLabel(name, this));
    line.addWidget(slider);
    connect(slider, &QSlider::valueChanged, this, [this] {
        auto const level = [](QSlider const& of) {
            return static_cast<float>(of.value()) / static_cast<float>(kWholePercent);
        };
        emit levelsChosen(level(*m_pMusic), level(*m_pClick));
    });
    return slider;
}
