// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <string>
#include <vector>

class QPainter;

namespace velmora::qt {

// A line through one value per label over an axis that begins at 0.
class CurveChart : public QWidget {
  public:
    explicit CurveChart(QWidget* parent = nullptr);
    void show(const std::string& title, const std::vector<std::string>& labels,
              const std::vector<double>& values);
    using QWidget::show;
    const QString& title() const { return title_; }
    int points() const { return static_cast<int>(values_.size()); }
    QSize sizeHint() const override { return {360, 200}; }
    QSize minimumSizeHint() const override { return {240, 140}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QRectF plot() const;
    QPointF place(std::size_t point, double value) const;
    void paintAxes(QPainter& painter) const;
    void paintCurve(QPainter& painter) const;

    QString title_;
    std::vector<QString> labels_;
    std::vector<double> values_;
    double top_ = 1;   // of the axis
    double step_ = 1;  // between its marks
};

}  // namespace velmora::qt
