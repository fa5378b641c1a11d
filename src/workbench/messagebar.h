// A line above the view that stays until it is dismissed: what became of an import or an export. Failures are
// red, warnings brown.
#pragma once

#include <QFrame>

class QLabel;
class QToolButton;

class MessageBar : public QFrame
{
    Q_OBJECT

public:
    enum class Kind { Good, Warning, Failure };

    explicit MessageBar(QWidget *parent = nullptr);

    // Shows `text` in place of what was shown. With a `folder` it offers to open it; `withDetails` offers the
    // details. A failure that has not been dismissed yet stays above any other message.
    void show(Kind kind, const QString &text, const QString &folder = QString(), bool withDetails = false);
    QString text() const;
    bool isFailure() const { return isVisibleTo(parentWidget()) && m_kind == Kind::Failure; }

public slots:
    void dismiss();

signals:
    void detailsAsked();

private:
    QLabel *m_text;
    QToolButton *m_details;
    QToolButton *m_open;
    QString m_folder;
    Kind m_kind = Kind::Good;
    QString m_failure; // not dismissed
};
