unit Main;
// Запрос TQuery, ЗапросTQuery
interface
var
  Запрос:TQuery;
implementation
{$R Заказ№Форма.dfm}
end.
