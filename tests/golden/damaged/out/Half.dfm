object F: TF
    object U: TKVAUpdateSQL
  end
object Q: TKVAQuery
    SQL.Strings = (
      'sel