#include "model/APPDVerbatimAttribute.h"

#include "core/ASharedObject.h"
#include "model/APPDStatement.h"

namespace ppdforge {

APPDVerbatimAttribute* APPDVerbatimAttribute::Create(const AQVString& name, const AQVString& spec,
                                                     const AQVString& text, const AQVString& value,
                                                     PPDValueType type) {
  return CreateSharedObject<APPDVerbatimAttribute>(name, spec, text, value, type);
}

APPDVerbatimAttribute::APPDVerbatimAttribute(const AQVString& name, const AQVString& spec,
                                             const AQVString& text, const AQVString& value,
                                             PPDValueType type)
    : APPDAttribute(name, spec, text, value, type, AQVString()) {}

IPPDAttribute* APPDVerbatimAttribute::Clone() const {
  return CreateSharedObject<APPDVerbatimAttribute>(*this);
}

AQVString APPDVerbatimAttribute::GetStringRepresentation(AError* error) const {
  const AQVString line = APPDStatement(GetName(), GetSpec(), GetText(), GetValue(), GetValueType(),
                                       AQVString())
                             .GetStringRepresentation(error);
  if (line.IsEmpty()) return line;
  const AQVString& comment = GetComment();
  if (comment.IsEmpty()) return line;
  const AQVString commentLines = APPDStatement::CommentLines(comment, error);
  if (commentLines.IsEmpty()) return AQVString();
  return commentLines + "\n" + line;
}

}  // namespace ppdforge
