#include "ZQSimFaults.h"

#include <algorithm>

namespace ZQAPI::sim {

std::string FormAnswer(EAnswerForm form, std::string_view hardwareAddress, std::string_view answer,
                       std::size_t longAnswerBytes) {
    std::string datagram(hardwareAddress);
    switch (form) {
        case EAnswerForm::kProper:
            break;
        case EAnswerForm::kNoColon:
            return datagram.append(" ").append(answer).append("\n");
        case EAnswerForm::kTooShort:
            return datagram.substr(0, 8).append("\n");
        case EAnswerForm::kTooLong: {
            datagram.append(":").append(answer);
            datagram.resize(std::max(datagram.size(), longAnswerBytes - 1), 'X');
            return datagram.append("\n");
        }
        case EAnswerForm::kEmpty:
            return {};
        case EAnswerForm::kWrongAddress:
            datagram.back() = datagram.back() == '0' ? '1' : '0';
            break;
        case EAnswerForm::kControlCharacters:
            return datagram.append(":\a").append(answer).append("\x1B\n");
    }
    return datagram.append(":").append(answer).append("\n");
}

}  // namespace ZQAPI::sim
