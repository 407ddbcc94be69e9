// SPDX-License-Identifier: MIT
#include "hosts/qgis/widgets/curve_chart.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "hosts/qgis/widgets/texts.h"

namespace velmora::qt {

namespace {

// A round distance that divides the axis into about four parts: 1, 2 or 5 times a power of ten.
double roundStep(double top) {
    const double raw = top / 4;
    const double power = std::pow(10, std::floor(std::log10(raw)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (raw <= factor * power) return factor * power;
    }
    return 10 * power;
}

}  // namespace

CurveChart::CurveChart(QWidget* parent) : QWidget(parent) { setAutoFillBackground(true); }

void CurveChart::show(const std::string& title, const std::vector<std::string>& labels,
                      const std::vector<double>& values) {
    title_ = toQt(title);
    labels_.clear();
    for (const std::string& label : labels) labels_.push_back(toQt(label));
    values_ = values;
    const double most = values_.empty() ? 0 : *std::max_element(values_.begin(), values_.end());
    step_ = roundStep(most > 0 ? most : 1);
    top_ = std::max(1.0, std::ceil(most / step_ - 1e-9)) * step_;
    setAccessibleName(title_);
    update();
}

QRectF CurveChart::plot() const {
    const QFontMetricsF metrics(font());
    const double left = metrics.horizontalAdvance("0.00") + 10;
    const double height = metrics.height();
    return {left, height + 10, std::max(1.0, width() - left - 14),
            std::max(1.0, this->height() - 2 * height - 20)};
}

QPointF CurveChart::place(std::size_t point, double value) const {
    const QRectF area = plot();
    const double share = (static_cast<double>(point) + 0.5) / static_cast<double>(values_.size());
    return {area.left() + share * area.width(), area.bottom() - value / top_ * area.height()};
}

void CurveChart::paintAxes(QPainter& painter) const {
    const QRectF area = plot();
    const QFontMetricsF metrics(font());
    painter.setPen(palette().color(QPalette::Mid));
    for (double mark = 0; mark <= top_ + step_ / 2; mark += step_) {
        const double y = area.bottom() - mark / top_ * area.height();
        painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
    }
    painter.setPen(palette().color(QPalette::Text));
    for (double mark = 0; mark <= top_ + step_ / 2; mark += step_) {
        const double y = area.bottom() - mark / top_ * area.height();
        painter.drawText(QRectF(0, y - metrics.height() / 2, area.left() - 6, metrics.height()),
                         Qt::AlignRight | Qt::AlignVCenter,
                         QString::number(mark, 'f', step_ < 0.1 ? 2 : 1));
    }
    const double room = area.width() / static_cast<double>(labels_.size());
    const bool narrow = room < metrics.horizontalAdvance("Mmm");  // then initials must do
    for (std::size_t i = 0; i < labels_.size(); ++i) {
        const double x = place(i, 0).x();
        painter.drawText(QRectF(x - room / 2, area.bottom() + 4, room, metrics.height()),
                         Qt::AlignHCenter, narrow ? labels_[i].left(1) : labels_[i]);
    }
}

void CurveChart::paintCurve(QPainter& painter) const {
    QPolygonF line;
    for (std::size_t i = 0; i < values_.size(); ++i) line << place(i, values_[i]);
    const QColor color(0x2e, 0x7d, 0x32);
    painter.setPen(QPen(color, 2));
    painter.drawPolyline(line);
    painter.setBrush(color);
    for (const QPointF& point : line) painter.drawEllipse(point, 3, 3);
}

void CurveChart::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.setPen(palette().color(QPalette::Text));
    if (values_.empty()) {
        painter.drawText(rect(), Qt::AlignCenter, "No crop is shown");
        return;
    }
    painter.drawText(QRectF(0, 4, width(), QFontMetricsF(font()).height()), Qt::AlignHCenter,
                     title_);
    paintAxes(painter);
    paintCurve(painter);
}

}  // namespace velmora::qt
