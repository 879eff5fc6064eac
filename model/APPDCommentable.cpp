#include "model/APPDCommentable.h"

#include "model/APPDStatement.h"

namespace ppdforge {

AQVString APPDCommentable::GetStringRepresentation(AError* error) const {
  return APPDStatement::CommentLines(comment_, error);
}

}  // namespace ppdforge
