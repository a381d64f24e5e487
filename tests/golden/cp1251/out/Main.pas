unit Main;
// Запрос TKVAQuery, ЗапросTQuery
interface
var
  Запрос:TKVAQuery;
implementation
{$R Заказ№Форма.dfm}
end.
