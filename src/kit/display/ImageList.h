#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtGui/QIcon>

#include <functional>

namespace discaro::kit {

// A drawing of the program's resources, such as ":/pictures/kinds/exe.svg", sharp at every size and density. Each size
// is drawn once for the whole program. Null when there is no such drawing.
QIcon pictureIcon(const QString& resource);

// The pictures that a list, a tree or a toolbar shows, by key.
class ImageList : public QObject {
    Q_OBJECT
public:
    using Pictures = std::function<QIcon(const QString& key)>;

    explicit ImageList(QObject* window = nullptr);

    // KEY stands for FOLDER/KEY.svg in the resources.
    void setPictures(const QString& folder, const QStringList& keys);
    const QStringList& keys() const { return m_keys; }
    // Null for a key that the list does not have.
    QIcon icon(const QString& key) const;
    // The same as a function, for as long as the list lives.
    Pictures pictures() const;

private:
    QString m_folder;
    QStringList m_keys;
};

} // namespace discaro::kit
