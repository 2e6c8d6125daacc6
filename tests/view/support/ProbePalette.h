#pragma once

#include <QApplication>
#include <QColor>
#include <QPalette>

/// For its lifetime the application palette has colours that no style sheet uses, so they show where no rule
/// sets a colour.
class ProbePalette {
public:
    ProbePalette() : m_former(QApplication::palette()) {
        QPalette palette = m_former;
        for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText}) {
            palette.setColor(role, text());
        }
        for (const QPalette::ColorRole role : {QPalette::Base, QPalette::Window}) {
            palette.setColor(role, background());
        }
        QApplication::setPalette(palette);
    }
    ~ProbePalette() { QApplication::setPalette(m_former); }
    ProbePalette(const ProbePalette&) = delete;
    ProbePalette& operator=(const ProbePalette&) = delete;

    static QColor text() { return QColor("#00aa00"); }
    static QColor background() { return QColor("#ff00ff"); }

private:
    QPalette m_former;
};
